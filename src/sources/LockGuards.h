#pragma once

#include "platform/Log.h"
#include "platform/ReadWriteLock.h"

#include <string_view>

namespace pelmora::sources {

/// What is logged, followed by the error number, when a lock cannot be had for reading.
inline constexpr std::string_view kReadLockFailed = "Pelmora: Trying to get a rdlock failed: ";

/// Holds a lock for reading. When the lock call fails, one line is logged and the work goes on
/// without the lock: a saver that shows a picture too many beats one that stands still.
class ReadGuard {
 public:
  ReadGuard(platform::ReadWriteLock& lock, platform::Log& log,
            std::string_view failure = kReadLockFailed);
  ~ReadGuard();
  ReadGuard(const ReadGuard&) = delete;
  ReadGuard& operator=(const ReadGuard&) = delete;

 private:
  platform::ReadWriteLock& _lock;
  const bool _held;
};

/// The same for writing. Without a log a failure is silent.
class WriteGuard {
 public:
  explicit WriteGuard(platform::ReadWriteLock& lock);
  WriteGuard(platform::ReadWriteLock& lock, platform::Log& log, std::string_view failure);
  ~WriteGuard();
  WriteGuard(const WriteGuard&) = delete;
  WriteGuard& operator=(const WriteGuard&) = delete;

 private:
  platform::ReadWriteLock& _lock;
  const bool _held;
};

}  // namespace pelmora::sources
