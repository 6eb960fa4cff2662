#pragma once

#include "shared/FilePath.h"
#include "shared/Result.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace pelmora::platform {

/// What changes whenever a file is replaced or written to.
struct FileStamp {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t modifiedSeconds = 0;
  std::int64_t modifiedNanoseconds = 0;
  bool operator==(const FileStamp&) const = default;
};

/// The stamp of a path, links followed; nullopt when there is no such file or it cannot be seen.
[[nodiscard]] std::optional<FileStamp> stampOf(const FilePath& file);

/// A whole file in memory, with the stamp that it had when it was opened. Read, not mapped: a
/// mapping ends the program when somebody cuts the file short meanwhile. Thread: a plain value.
class FileContents {
 public:
  /// Reads a regular file, links followed, of at most `limit` bytes. Never waits for the other end
  /// of a pipe.
  [[nodiscard]] static Result<FileContents> read(const FilePath& file, std::size_t limit);

  [[nodiscard]] std::span<const std::uint8_t> bytes() const { return {_data.get(), _size}; }
  [[nodiscard]] const FileStamp& stamp() const { return _stamp; }

 private:
  FileContents() = default;

  // Not a vector, which would write zeros over the memory first.
  std::unique_ptr<std::uint8_t[]> _data;
  std::size_t _size = 0;
  FileStamp _stamp;
};

}  // namespace pelmora::platform
