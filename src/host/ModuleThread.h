#pragma once

#include "host/LinuxServices.h"
#include "host/SaverSession.h"
#include "platform/linux/RunLoopScheduler.h"

#include <mutex>
#include <thread>
#include <vector>

namespace pelmora::host {

/// The module's main thread beside the GUI thread: walking, choosing, decoding and drawing a card
/// happen on it, and never hold up a frame.
/// Thread: made, told and destroyed on the GUI thread. Destruction runs the stop sequence and
/// joins.
class ModuleThread {
 public:
  /// Starts the thread, the views and their frames. The presenters must outlive this.
  ModuleThread(platform::Clock& clock, platform::Displays& displays, ServiceChoices choices,
               std::vector<ViewPlace> places);
  ~ModuleThread();
  ModuleThread(const ModuleThread&) = delete;
  ModuleThread& operator=(const ModuleThread&) = delete;

  /// The place of a view has another size or scale from now on.
  void resize(std::size_t view, const Size& size, double scale);

 private:
  void run();

  ServiceChoices _choices;
  const std::vector<ViewPlace> _places;
  platform::RunLoopScheduler _scheduler;
  SaverSession* _session = nullptr;  // on the thread, while it runs
  std::mutex _mutex;
  LinuxServices* _services = nullptr;  // under _mutex; while the thread has them
  std::thread _thread;
};

}  // namespace pelmora::host
