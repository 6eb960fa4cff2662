#pragma once

namespace pelmora::sandbox {

/// While this lives, the process has a little more than `seconds` left, of the processor and of the
/// clock: a loop in a library, or a disk that does not answer, ends it (SIGXCPU, SIGALRM). By then
/// the other side has long given up. One at a time. Thread: any one.
class TimeLimit {
 public:
  explicit TimeLimit(int seconds);
  ~TimeLimit();
  TimeLimit(const TimeLimit&) = delete;
  TimeLimit& operator=(const TimeLimit&) = delete;
};

}  // namespace pelmora::sandbox
