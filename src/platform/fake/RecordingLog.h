#pragma once

#include "platform/Log.h"

#include <mutex>
#include <string>
#include <vector>

namespace pelmora::platform {

/// Keeps every line. Thread: any.
class RecordingLog : public Log {
 public:
  void write(std::string_view line) override;
  [[nodiscard]] std::vector<std::string> lines() const;
  /// How many lines are exactly `line`.
  [[nodiscard]] std::size_t count(std::string_view line) const;
  /// How many lines contain `part`.
  [[nodiscard]] std::size_t countContaining(std::string_view part) const;
  void clear();

 private:
  mutable std::mutex _mutex;
  std::vector<std::string> _lines;
};

}  // namespace pelmora::platform
