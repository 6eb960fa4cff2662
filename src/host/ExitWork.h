#pragma once

#include <functional>

namespace pelmora::host {

/// Work that is done even where a library ends the process with exit(), as the toolkit does when
/// its window system goes away: then `work` runs, with a few seconds' time, and the process ends
/// with a failure, without what else would run at its end and may need what is gone.
/// An exit() on another thread is none of its business. One at a time on a thread.
/// Thread: made and destroyed on the same.
class ExitWork {
 public:
  explicit ExitWork(std::function<void()> work);
  /// An ordinary end: the work is not done here.
  ~ExitWork();
  ExitWork(const ExitWork&) = delete;
  ExitWork& operator=(const ExitWork&) = delete;
};

}  // namespace pelmora::host
