#include "sources/LockGuards.h"

#include "platform/fake/RecordingLog.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <thread>

namespace pelmora::sources {

namespace {

bool canBeWritten(ListLock& lock) {
  bool written = false;
  // Another thread, since one that holds the lock gets an error instead.
  std::thread([&] {
    written = lock.lockForWriting() == 0;
    if (written) lock.unlock();
  }).join();
  return written;
}

}  // namespace

TEST(LockGuards, giveTheLockBack) {
  ListLock lock;
  platform::RecordingLog log;
  { const ReadGuard guard(lock, log); }
  EXPECT_TRUE(canBeWritten(lock));
  { const WriteGuard guard(lock); }
  EXPECT_TRUE(canBeWritten(lock));
  EXPECT_TRUE(log.lines().empty());
}

TEST(LockGuards, letSeveralRead) {
  ListLock lock;
  platform::RecordingLog log;
  const ReadGuard first(lock, log);
  std::thread([&] { const ReadGuard second(lock, log); }).join();
  EXPECT_TRUE(log.lines().empty());
}

TEST(LockGuards, logAFailedLockAndGoOnWithoutIt) {
  ListLock lock;
  platform::RecordingLog log;
  {
    const WriteGuard held(lock);
    { const ReadGuard failed(lock, log); }
    { const WriteGuard failed(lock, log, "Pelmora: no lock: "); }
    const std::string error = std::to_string(EDEADLK);
    EXPECT_EQ(log.lines(),
              (std::vector<std::string>{"Pelmora: Trying to get a rdlock failed: " + error,
                                        "Pelmora: no lock: " + error}));
    // Still held by the first: a guard that got nothing gives nothing back.
    EXPECT_EQ(lock.lockForReading(), EDEADLK);
  }
  EXPECT_TRUE(canBeWritten(lock));
}

TEST(LockGuards, failSilentlyWithoutALog) {
  ListLock lock;
  {
    const WriteGuard held(lock);
    const WriteGuard failed(lock);
  }
  EXPECT_TRUE(canBeWritten(lock));
}

TEST(LockGuards, endADebugBuildThatTakesLocksOutOfTheirOrder) {
  ListLock items(LockPlace::items);
  ListLock weights(LockPlace::weights);
  const auto takeBoth = [](ListLock& first, ListLock& second) {
    const WriteGuard outer(first);
    const WriteGuard inner(second);
  };
  takeBoth(items, weights);
  takeBoth(items, weights);  // both were given back
  EXPECT_DEBUG_DEATH(takeBoth(weights, items), "order of locks: the records are locked after");
}

}  // namespace pelmora::sources
