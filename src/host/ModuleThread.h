#pragma once

#include "host/LinuxServices.h"
#include "host/SaverSession.h"
#include "platform/linux/RunLoopScheduler.h"

#include <cstddef>
#include <functional>
#include <mutex>
#include <thread>

namespace pelmora::host {

/// The module's main thread beside the GUI thread: walking, choosing, decoding and drawing a card
/// happen on it, and never hold up a frame.
/// Thread: made, told and destroyed on the GUI thread; `end` on any but its own.
class ModuleThread {
 public:
  /// Starts the thread, which has no views yet.
  ModuleThread(platform::Clock& clock, platform::Displays& displays, ServiceChoices choices);
  ~ModuleThread();
  ModuleThread(const ModuleThread&) = delete;
  ModuleThread& operator=(const ModuleThread&) = delete;

  /// Starts a view, whose number this gives. Its presenter must last until the view was removed, or
  /// the thread has ended.
  std::size_t addView(ViewPlace place);
  /// Ends a view; `released` is called on the module's thread when its presenter is out of use, and
  /// not at all when the thread ends before.
  void removeView(std::size_t view, std::function<void()> released);
  /// The place of a view has another size or scale from now on.
  void resize(std::size_t view, const Size& size, double scale);
  /// Runs the stop sequence and joins, the first time it is called. Whoever calls it later, or
  /// meanwhile, waits for that.
  void end();

 private:
  void run();

  ServiceChoices _choices;
  std::size_t _nextView = 0;
  std::once_flag _ended;
  platform::RunLoopScheduler _scheduler;
  SaverSession* _session = nullptr;  // on the thread, while it runs
  std::mutex _mutex;
  LinuxServices* _services = nullptr;  // under _mutex; while the thread has them
  std::thread _thread;
};

}  // namespace pelmora::host
