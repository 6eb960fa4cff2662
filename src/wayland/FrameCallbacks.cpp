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

constexpr std::chrono::milliseconds kAnswerPatience{500};
// In which the thread that hears callbacks takes what has been read. To a window that Qt takes for
// hidden it grants nothing, which would tell, while a callback may be under way all the same.
constexpr std::chrono::milliseconds kMoment{20};

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

  [[nodiscard]] std::vector<QWindow*> windows() const {
    std::vector<QWindow*> windows;
    for (const auto& [window, count] : _awaited) windows.push_back(window);
    return windows;
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

/// Takes a window off the screen, unbeknown to Qt.
void unmap(QWindow& window) {
  wl_surface* surface = surfaceOf(window);
  if (!surface) return;
  wl_surface_attach(surface, nullptr, 0, 0);
  wl_surface_commit(surface);
}

}  // namespace

void awaitFrameCallbacks(const std::vector<QWindow*>& windows, std::chrono::milliseconds limit) {
  AwaitedUpdates updates;
  std::vector<QWindow*> silent;
  for (QWindow* window : windows) {
    if (!surfaceOf(*window)) continue;
    if (window->isExposed()) {
      updates.await(*window);
    } else {
      silent.push_back(window);
    }
  }
  const bool isGranted = updates.areGrantedWithin(limit);
  if (isGranted && silent.empty()) return;
  // Perhaps the compositor does not call back, perhaps it does just when the window goes. It has
  // hardly a reason to for what has no content, and what it has sent by now needs no more than this
  // machine's time.
  for (QWindow* window : updates.windows()) unmap(*window);
  for (QWindow* window : silent) unmap(*window);
  (void)OwnQueue(displayOfApplication()).roundTrip(kAnswerPatience);
  if (!silent.empty()) std::this_thread::sleep_for(kMoment);
  (void)updates.areGrantedWithin(limit);
}

}  // namespace pelmora::wayland
