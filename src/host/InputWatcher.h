#pragma once

#include <QObject>
#include <QPointF>
#include <QTimer>

#include <chrono>
#include <functional>
#include <map>

namespace pelmora::host {

/// Tells real input from the noise that a new full-screen window gets: a key, a button, a wheel, a
/// touch, or the pointer moved a few points away from where it entered a window, or was first seen
/// there. When a window moves or changes its size under the pointer, that is seen anew; as the
/// pointer may be heard of first, a movement counts only a moment later. A window that the desktop
/// asks to close counts as input. Watches every window it is installed on as an event filter.
/// Thread: GUI.
class InputWatcher : public QObject {
 public:
  /// `any`: every key, click and movement counts; `escape`: the Escape key alone;
  /// `none`: nothing does, as where input is the business of others.
  enum class Ends { any, escape, none };

  static constexpr std::chrono::milliseconds kUntilSure{150};

  InputWatcher(Ends ends, std::function<void()> ended,
               std::chrono::milliseconds untilSure = kUntilSure);
  [[nodiscard]] bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool isInput(QObject* watched, QEvent* event);
  void pointerSeen(QObject* watched, const QPointF& pointer);

  const Ends _ends;
  std::function<void()> _ended;
  QTimer _moved;
  std::map<QObject*, QPointF> _pointerAtFirst;  // by window, in its own points
};

}  // namespace pelmora::host
