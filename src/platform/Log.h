#pragma once

#include <string_view>

namespace pelmora::platform {

/// The system log. A line is a sentence for a person; a file name in it may hold any bytes, which
/// the sink makes printable and keeps on one line. Thread: any.
class Log {
 public:
  virtual ~Log() = default;

  virtual void write(std::string_view line) = 0;

  /// Formats as printf does, then writes.
  void print(const char* format, ...) __attribute__((format(printf, 2, 3)));
};

}  // namespace pelmora::platform
