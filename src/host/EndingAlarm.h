#pragma once

#include <chrono>

namespace pelmora::host {

/// Ends the process with a line on standard error, unless it is gone before: what `EndingLimit`
/// does where the system has no thread left for it. One at a time. Thread: any.
class EndingAlarm {
 public:
  explicit EndingAlarm(std::chrono::milliseconds limit);
  ~EndingAlarm();
  EndingAlarm(const EndingAlarm&) = delete;
  EndingAlarm& operator=(const EndingAlarm&) = delete;
};

}  // namespace pelmora::host
