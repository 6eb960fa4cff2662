#include "host/InputWatcher.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include <cmath>

namespace pelmora::host {

namespace {
// A knocked desk or a jittering sensor moves the pointer by a point or two.
constexpr double kRealMovement = 5;  // points
}  // namespace

InputWatcher::InputWatcher(Ends ends, std::function<void()> ended,
                           std::chrono::milliseconds untilSure)
    : _ends(ends), _ended(std::move(ended)) {
  _moved.setSingleShot(true);
  _moved.setInterval(untilSure);
  connect(&_moved, &QTimer::timeout, this, [this] { _ended(); });
}

bool InputWatcher::eventFilter(QObject* watched, QEvent* event) {
  if (isInput(watched, event)) _ended();
  return false;
}

bool InputWatcher::isInput(QObject* watched, QEvent* event) {
  if (_ends == Ends::none) return false;
  if (event->type() == QEvent::KeyPress) {
    return _ends == Ends::any || static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
  }
  if (_ends == Ends::escape) return false;
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
    case QEvent::Close:
      return true;
    case QEvent::Enter:
      // The pointer may have been put there by the desktop, as when a display has gone.
      _pointerAtFirst[watched] = static_cast<QEnterEvent*>(event)->position();
      return false;
    case QEvent::MouseMove:
      pointerSeen(watched, static_cast<QMouseEvent*>(event)->position());
      return false;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Hide:
      _pointerAtFirst.erase(watched);
      _moved.stop();
      return false;
    default:
      return false;
  }
}

void InputWatcher::pointerSeen(QObject* watched, const QPointF& pointer) {
  const QPointF first = _pointerAtFirst.emplace(watched, pointer).first->second;
  const double moved = std::hypot(pointer.x() - first.x(), pointer.y() - first.y());
  if (moved > kRealMovement && !_moved.isActive()) _moved.start();
}

}  // namespace pelmora::host
