#include "sources/LockGuards.h"

#include <string>

namespace pelmora::sources {

namespace {

bool isHeld(int error, platform::Log& log, std::string_view failure) {
  if (error != 0) log.write(std::string(failure) + std::to_string(error));
  return error == 0;
}

}  // namespace

ReadGuard::ReadGuard(platform::ReadWriteLock& lock, platform::Log& log, std::string_view failure)
    : _lock(lock), _held(isHeld(lock.lockForReading(), log, failure)) {}

ReadGuard::~ReadGuard() {
  if (_held) _lock.unlock();
}

WriteGuard::WriteGuard(platform::ReadWriteLock& lock)
    : _lock(lock), _held(lock.lockForWriting() == 0) {}

WriteGuard::WriteGuard(platform::ReadWriteLock& lock, platform::Log& log, std::string_view failure)
    : _lock(lock), _held(isHeld(lock.lockForWriting(), log, failure)) {}

WriteGuard::~WriteGuard() {
  if (_held) _lock.unlock();
}

}  // namespace pelmora::sources
