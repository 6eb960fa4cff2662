#include "view/LogFile.h"

#include "platform/Clock.h"
#include "platform/UserFolders.h"
#include "view/DateText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>

namespace pelmora::view {

namespace {

constexpr std::string_view kColumns = "----folder----\t----name----\t----frequency----\n";

std::string fileName(std::uint64_t screenIndex) {
  if (screenIndex == 0) return "ImageFrequencyLogSystemPref.txt";
  return "ImageFrequencyLogScreen" + std::to_string(screenIndex) + ".txt";
}

}  // namespace

LogFile::LogFile(const platform::Clock& clock, const platform::UserFolders& userFolders,
                 std::uint64_t screenIndex, std::string_view appName)
    : _clock(clock), _startDate(clock.now()) {
  const auto caches = userFolders.caches();
  if (caches.empty()) return;
  const FilePath folder = caches.front() / appName;
  mkdir(folder.c_str(), 0700);
  _handle = platform::FileDescriptor(
      open((folder / fileName(screenIndex)).c_str(),
           O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0600));
  writeToFileHandle(kColumns, _handle);
}

void LogFile::writeHeader() {
  writeToFileHandle("start " + dateAndTimeText(_startDate, formatLocale()) + "\t - \tend " +
                        timeText(_clock.now(), formatLocale()) + "\n",
                    _handle);
}

void LogFile::close() { _handle = platform::FileDescriptor(); }

void writeToFileHandle(std::string_view text, const platform::FileDescriptor& handle) {
  while (handle.isOpen() && !text.empty()) {
    const ssize_t written = write(handle.get(), text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace pelmora::view
