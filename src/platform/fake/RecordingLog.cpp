#include "platform/fake/RecordingLog.h"

#include <algorithm>

namespace pelmora::platform {

void RecordingLog::write(std::string_view line) {
  const std::lock_guard lock(_mutex);
  _lines.emplace_back(line);
}

std::vector<std::string> RecordingLog::lines() const {
  const std::lock_guard lock(_mutex);
  return _lines;
}

std::size_t RecordingLog::count(std::string_view line) const {
  const std::lock_guard lock(_mutex);
  return static_cast<std::size_t>(std::count(_lines.begin(), _lines.end(), line));
}

std::size_t RecordingLog::countContaining(std::string_view part) const {
  const std::lock_guard lock(_mutex);
  return static_cast<std::size_t>(std::count_if(
      _lines.begin(), _lines.end(),
      [part](const std::string& line) { return line.find(part) != std::string::npos; }));
}

void RecordingLog::clear() {
  const std::lock_guard lock(_mutex);
  _lines.clear();
}

}  // namespace pelmora::platform
