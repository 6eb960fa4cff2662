#pragma once

#include <functional>
#include <string>

namespace pelmora::idle {

/// The saver, as a process. Thread: main.
class Saver {
 public:
  virtual ~Saver() = default;

  /// Starts it. `ended` is called once, later, when it is no more or could not be started; it says
  /// how it ended, for the log. None may be running.
  virtual void start(std::function<void(const std::string& how)> ended) = 0;
  /// Asks it to end.
  virtual void stop() = 0;
  /// Ends it without asking.
  virtual void kill() = 0;
};

}  // namespace pelmora::idle
