#pragma once

#include "host/EndingAlarm.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace pelmora::host {

/// Ends the process when its ending takes too long, since a thread hangs on a disk that does not
/// answer: what had to be done first was done, or never will be. Made when the ending begins;
/// thread: the one that ends.
class EndingLimit {
 public:
  static constexpr std::chrono::milliseconds kLimit{3'000};

  explicit EndingLimit(std::chrono::milliseconds limit = kLimit);
  ~EndingLimit();
  EndingLimit(const EndingLimit&) = delete;
  EndingLimit& operator=(const EndingLimit&) = delete;

 private:
  void watch(std::chrono::milliseconds limit);

  std::mutex _mutex;
  std::condition_variable _ended;
  bool _hasEnded = false;  // under the mutex
  std::thread _thread;
  std::optional<EndingAlarm> _alarm;  // instead of the thread, where none could be started
};

}  // namespace pelmora::host
