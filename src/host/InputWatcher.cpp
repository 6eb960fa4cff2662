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

InputWatcher::InputWatcher(Ends ends, std::function<void()> ended)
    : _ends(ends), _ended(std::move(ended)) {}

bool InputWatcher::eventFilter(QObject* watched, QEvent* event) {
  if (isInput(watched, event)) _ended();
  return false;
}

bool InputWatcher::isInput(QObject* watched, QEvent* event) {
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
      return movedAway(watched, static_cast<QEnterEvent*>(event)->position());
    case QEvent::MouseMove:
      return movedAway(watched, static_cast<QMouseEvent*>(event)->position());
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Hide:
      _pointerAtFirst.erase(watched);
      return false;
    default:
      return false;
  }
}

bool InputWatcher::movedAway(QObject* watched, const QPointF& pointer) {
  const QPointF first = _pointerAtFirst.emplace(watched, pointer).first->second;
  return std::hypot(pointer.x() - first.x(), pointer.y() - first.y()) > kRealMovement;
}

}  // namespace pelmora::host
