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

bool InputWatcher::eventFilter(QObject*, QEvent* event) {
  if (isInput(event)) _ended();
  return false;
}

bool InputWatcher::isInput(QEvent* event) {
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
      return true;
    case QEvent::Enter:
      return movedAway(static_cast<QEnterEvent*>(event)->globalPosition());
    case QEvent::MouseMove:
      return movedAway(static_cast<QMouseEvent*>(event)->globalPosition());
    default:
      return false;
  }
}

bool InputWatcher::movedAway(const QPointF& pointer) {
  if (!_pointerAtFirst) _pointerAtFirst = pointer;
  return std::hypot(pointer.x() - _pointerAtFirst->x(), pointer.y() - _pointerAtFirst->y()) >
         kRealMovement;
}

}  // namespace pelmora::host
