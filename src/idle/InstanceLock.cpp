#include "idle/InstanceLock.h"

#include "platform/SystemError.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <utility>

namespace pelmora::idle {

namespace {

constexpr std::size_t kLongestName = 200;

/// ":0.0" names a screen of the display ":0".
std::string withoutScreen(const std::string& display) {
  const std::size_t colon = display.rfind(':');
  if (colon == std::string::npos) return display;
  return display.substr(0, display.find('.', colon));
}

}  // namespace

std::string lockName(const std::string& display) {
  std::string name = "pelmora-idle-" + withoutScreen(display).substr(0, kLongestName);
  for (char& each : name) {
    if (each == '/') each = '_';
  }
  return name + ".lock";
}

Result<InstanceLock> InstanceLock::take(const std::string& runtimeFolder,
                                        const std::string& display) {
  const FilePath path = FilePath(runtimeFolder) / lockName(display);
  platform::FileDescriptor file(
      open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
  if (!file.isOpen()) return platform::systemError(path, errno);
  if (flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EWOULDBLOCK) return platform::systemError(path, errno);
    return Error{"another one watches this display already"};
  }
  return InstanceLock(std::move(file));
}

}  // namespace pelmora::idle
