#include "sources/LockGuards.h"

#include <string>

#ifndef NDEBUG
#include <cstdio>
#include <cstdlib>
#endif

namespace pelmora::sources {

namespace {

bool isHeld(int error, platform::Log& log, std::string_view failure) {
  if (error != 0) log.write(std::string(failure) + std::to_string(error));
  return error == 0;
}

#ifdef NDEBUG
void checkOrder(const ListLock& /*lock*/) {}
void noteTaken(const ListLock& /*lock*/) {}
void noteGivenBack(const ListLock& /*lock*/) {}
#else
/// Asked before the call, which may be the one that never returns.
void checkOrder(const ListLock& lock) {
  const char* const objection = LockOrder::ofThisThread().objectionTo(lock.place());
  if (objection == nullptr) return;
  std::fprintf(stderr, "pelmora: order of locks: %s\n", objection);
  std::abort();
}

void noteTaken(const ListLock& lock) { LockOrder::ofThisThread().took(lock.place()); }
void noteGivenBack(const ListLock& lock) { LockOrder::ofThisThread().gaveBack(lock.place()); }
#endif

/// 0 when the lock is held.
int take(ListLock& lock, int (platform::ReadWriteLock::*call)()) {
  checkOrder(lock);
  const int error = (lock.*call)();
  if (error == 0) noteTaken(lock);
  return error;
}

int takeForReading(ListLock& lock) { return take(lock, &platform::ReadWriteLock::lockForReading); }

int takeForWriting(ListLock& lock) { return take(lock, &platform::ReadWriteLock::lockForWriting); }

void giveBack(ListLock& lock) {
  lock.unlock();
  noteGivenBack(lock);
}

}  // namespace

ReadGuard::ReadGuard(ListLock& lock, platform::Log& log, std::string_view failure)
    : _lock(lock), _held(isHeld(takeForReading(lock), log, failure)) {}

ReadGuard::~ReadGuard() {
  if (_held) giveBack(_lock);
}

WriteGuard::WriteGuard(ListLock& lock) : _lock(lock), _held(takeForWriting(lock) == 0) {}

WriteGuard::WriteGuard(ListLock& lock, platform::Log& log, std::string_view failure)
    : _lock(lock), _held(isHeld(takeForWriting(lock), log, failure)) {}

WriteGuard::~WriteGuard() {
  if (_held) giveBack(_lock);
}

}  // namespace pelmora::sources
