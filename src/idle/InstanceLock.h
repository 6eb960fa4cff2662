#pragma once

#include "platform/FileDescriptor.h"
#include "shared/Result.h"

#include <string>

namespace pelmora::idle {

/// Keeps others of the same user from watching the same display. Held until it is destroyed, or the
/// process ends.
/// Thread: a plain value. Errors: says who holds it, or why it cannot be taken.
class InstanceLock {
 public:
  /// `runtimeFolder` is the session's folder for what runs, `display` as the environment names it.
  static Result<InstanceLock> take(const std::string& runtimeFolder, const std::string& display);

 private:
  explicit InstanceLock(platform::FileDescriptor file) : _file(std::move(file)) {}

  platform::FileDescriptor _file;
};

/// The name of the lock's file for a display: ":0.0" and ":0" are the same.
[[nodiscard]] std::string lockName(const std::string& display);

}  // namespace pelmora::idle
