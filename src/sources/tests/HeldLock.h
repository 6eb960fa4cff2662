#pragma once

#include "sources/LockGuards.h"

#include <gtest/gtest.h>

namespace pelmora::sources {

/// A lock that is held, and of which the check of the locks' order knows nothing: what takes it on
/// the same thread fails.
class HeldLock {
 public:
  explicit HeldLock(ListLock& lock) : _lock(lock) { EXPECT_EQ(lock.lockForWriting(), 0); }
  ~HeldLock() { _lock.unlock(); }
  HeldLock(const HeldLock&) = delete;
  HeldLock& operator=(const HeldLock&) = delete;

 private:
  ListLock& _lock;
};

}  // namespace pelmora::sources
