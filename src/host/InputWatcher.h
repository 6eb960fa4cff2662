#pragma once

#include <QObject>
#include <QPointF>

#include <functional>
#include <optional>

namespace pelmora::host {

/// Tells real input from the noise that a new full-screen window gets: a key, a button, a wheel, a
/// touch, or the pointer moved a few points away from where it was first seen. Watches every window
/// it is installed on as an event filter. Thread: GUI.
class InputWatcher : public QObject {
 public:
  /// `any`: every key, click and movement counts; `escape`: the Escape key alone;
  /// `none`: nothing does, as where input is the business of others.
  enum class Ends { any, escape, none };

  InputWatcher(Ends ends, std::function<void()> ended);
  [[nodiscard]] bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool isInput(QEvent* event);
  [[nodiscard]] bool movedAway(const QPointF& pointer);

  const Ends _ends;
  std::function<void()> _ended;
  std::optional<QPointF> _pointerAtFirst;
};

}  // namespace pelmora::host
