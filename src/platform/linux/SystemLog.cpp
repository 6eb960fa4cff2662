#include "platform/linux/SystemLog.h"

#include "platform/PrintableLine.h"

#include <syslog.h>
#include <unistd.h>

#include <string>

namespace pelmora::platform {

namespace {

/// In one call, so that the lines of several threads and processes do not mix.
void writeToStandardError(const std::string& line) {
  // A terminal that has gone, or a full pipe, costs the line and nothing else.
  [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace

SystemLog::SystemLog(StandardError standardError)
    : _toStandardError(standardError == StandardError::always || isatty(STDERR_FILENO) == 1) {
  openlog("pelmora", LOG_PID, LOG_USER);
}

SystemLog::~SystemLog() { closelog(); }

void SystemLog::write(std::string_view line) {
  std::string printable = printableLine(line);
  syslog(LOG_NOTICE, "%s", printable.c_str());
  if (!_toStandardError) return;
  printable += '\n';
  writeToStandardError(printable);
}

}  // namespace pelmora::platform
