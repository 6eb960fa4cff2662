#pragma once

#include "shared/FilePath.h"

#include <string_view>

namespace pelmora::platform {

/// A folder of a test's own, empty at first, under the system's temporary folder; gone with all its
/// contents when this goes. Names are relative and may hold slashes: missing folders on the way are
/// made. Thread: any, one at a time. Errors: it throws, which fails the test.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Without symbolic links on the way.
  [[nodiscard]] const FilePath& path() const { return _path; }

  /// A file of these bytes, replacing what it held.
  FilePath write(std::string_view name, std::string_view bytes = {}) const;
  FilePath mkdir(std::string_view name) const;
  /// A symbolic link to `target`, which need not exist and is relative to the link's folder unless
  /// it begins with a slash.
  FilePath link(std::string_view name, std::string_view target) const;
  FilePath link(std::string_view name, const FilePath& target) const;

 private:
  FilePath _path;
};

}  // namespace pelmora::platform
