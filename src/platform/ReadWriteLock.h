#pragma once

#include <pthread.h>

namespace pelmora::platform {

/// A POSIX read-write lock with default attributes.
class ReadWriteLock {
 public:
  ReadWriteLock() { pthread_rwlock_init(&_lock, nullptr); }
  ~ReadWriteLock() { pthread_rwlock_destroy(&_lock); }
  ReadWriteLock(const ReadWriteLock&) = delete;
  ReadWriteLock& operator=(const ReadWriteLock&) = delete;

  /// The POSIX error number, 0 when the lock is held.
  [[nodiscard]] int lockForReading() { return pthread_rwlock_rdlock(&_lock); }
  [[nodiscard]] int lockForWriting() { return pthread_rwlock_wrlock(&_lock); }
  void unlock() { pthread_rwlock_unlock(&_lock); }

 private:
  pthread_rwlock_t _lock;
};

}  // namespace pelmora::platform
