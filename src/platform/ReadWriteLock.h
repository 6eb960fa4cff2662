#pragma once

#include <pthread.h>

namespace pelmora::platform {

/// A POSIX read-write lock with default attributes. Whoever finds it taken tries for a few
/// microseconds before it sleeps: what it guards is held for less than one as a rule, and threads
/// that put each other to sleep over that together take longer than one alone.
class ReadWriteLock {
 public:
  ReadWriteLock() { pthread_rwlock_init(&_lock, nullptr); }
  ~ReadWriteLock() { pthread_rwlock_destroy(&_lock); }
  ReadWriteLock(const ReadWriteLock&) = delete;
  ReadWriteLock& operator=(const ReadWriteLock&) = delete;

  /// The POSIX error number, 0 when the lock is held.
  [[nodiscard]] int lockForReading() {
    for (int tries = 0; tries < kTriesBeforeSleep; ++tries) {
      if (pthread_rwlock_tryrdlock(&_lock) == 0) return 0;
    }
    return pthread_rwlock_rdlock(&_lock);
  }
  [[nodiscard]] int lockForWriting() {
    for (int tries = 0; tries < kTriesBeforeSleep; ++tries) {
      if (pthread_rwlock_trywrlock(&_lock) == 0) return 0;
    }
    return pthread_rwlock_wrlock(&_lock);
  }
  void unlock() { pthread_rwlock_unlock(&_lock); }

 private:
  static constexpr int kTriesBeforeSleep = 1000;

  pthread_rwlock_t _lock;
};

}  // namespace pelmora::platform
