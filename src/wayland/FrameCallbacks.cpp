#include "wayland/FrameCallbacks.h"

#include "wayland/OwnQueue.h"
#include "wayland/QtHandles.h"

#include <qpa/qplatformwindow.h>
#include <wayland-client.h>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <QWindow>

#include <map>
#include <thread>

namespace pelmora::wayland {

namespace {

/// Windows that have asked for updates, which Qt grants when no callback is under way. They ask
/// twice: the first may have been granted for a frame before the last, and from amid the work of
/// the thread that hears callbacks, which has finished it when it grants the second.
class AwaitedUpdates : public QObject {
 public:
  void await(QWindow& window) {
    _awaited[&window] = 2;
    window.installEventFilter(this);
    window.requestUpdate();
  }

  [[nodiscard]] bool areGrantedWithin(std::chrono::milliseconds limit) {
    const QDeadlineTimer deadline(limit);
    while (!areGranted()) {
      if (deadline.hasExpired()) return false;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
  }

  /// Takes the windows that still wait off the screen, unbeknown to Qt.
  void unmapAwaited() {
    for (const auto& [window, count] : _awaited) {
      wl_surface* surface = surfaceOf(*window);
      if (!surface) continue;
      wl_surface_attach(surface, nullptr, 0, 0);
      wl_surface_commit(surface);
    }
  }

  [[nodiscard]] bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::UpdateRequest) return false;
    const auto found = _awaited.find(static_cast<QWindow*>(watched));
    if (found == _awaited.end()) return true;
    if (--found->second > 0) {
      found->first->requestUpdate();
    } else {
      _awaited.erase(found);
    }
    return true;
  }

 private:
  /// Takes what the thread that hears callbacks has told.
  [[nodiscard]] bool areGranted() {
    for (const auto& [window, count] : std::map(_awaited)) {
      auto* platformWindow = dynamic_cast<QObject*>(window->handle());
      if (!platformWindow) return true;
      QCoreApplication::sendPostedEvents(platformWindow, QEvent::MetaCall);
    }
    return _awaited.empty();
  }

  std::map<QWindow*, int> _awaited;  // how many each
};

}  // namespace

void awaitFrameCallbacks(const std::vector<QWindow*>& windows, std::chrono::milliseconds limit) {
  AwaitedUpdates updates;
  for (QWindow* window : windows) {
    // What is not exposed is not called back.
    if (surfaceOf(*window) && window->isExposed()) updates.await(*window);
  }
  if (updates.areGrantedWithin(limit)) return;
  // Perhaps the compositor does not call back, perhaps it does just when the window goes. It has
  // no reason to for what has no content, and what it has sent by now needs no more than this
  // machine's time.
  updates.unmapAwaited();
  if (!OwnQueue(displayOfApplication()).roundTrip()) return;
  (void)updates.areGrantedWithin(limit);
}

}  // namespace pelmora::wayland
