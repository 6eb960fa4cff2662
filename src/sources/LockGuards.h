#pragma once

#include "platform/Log.h"
#include "platform/ReadWriteLock.h"
#include "sources/LockOrder.h"

#include <string_view>

namespace pelmora::sources {

/// What is logged, followed by the error number, when a lock cannot be had for reading.
inline constexpr std::string_view kReadLockFailed = "Pelmora: Trying to get a rdlock failed: ";

/// A lock of the list, and its place in their order.
class ListLock : public platform::ReadWriteLock {
 public:
  explicit ListLock(LockPlace place = LockPlace::none) : _place(place) {}
  [[nodiscard]] LockPlace place() const { return _place; }

 private:
  const LockPlace _place;
};

/// Holds a lock for reading. When the lock call fails, one line is logged and the work goes on
/// without the lock: a saver that shows a picture too many beats one that stands still. A debug
/// build that takes locks out of their order says so and aborts.
class ReadGuard {
 public:
  ReadGuard(ListLock& lock, platform::Log& log, std::string_view failure = kReadLockFailed);
  ~ReadGuard();
  ReadGuard(const ReadGuard&) = delete;
  ReadGuard& operator=(const ReadGuard&) = delete;

 private:
  ListLock& _lock;
  const bool _held;
};

/// The same for writing. Without a log a failure is silent.
class WriteGuard {
 public:
  explicit WriteGuard(ListLock& lock);
  WriteGuard(ListLock& lock, platform::Log& log, std::string_view failure);
  ~WriteGuard();
  WriteGuard(const WriteGuard&) = delete;
  WriteGuard& operator=(const WriteGuard&) = delete;

 private:
  ListLock& _lock;
  const bool _held;
};

}  // namespace pelmora::sources
