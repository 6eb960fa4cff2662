#pragma once

#include "shared/FilePath.h"

#include <string>

namespace pelmora::host {

/// A file or folder on a command line, to be told of as the person gave it. Thread: a plain value.
class GivenPath {
 public:
  explicit GivenPath(const std::string& word);

  /// From the root on, with no detour on the way; a link at its end stays what it is.
  [[nodiscard]] const FilePath& absolute() const { return _absolute; }
  /// A path that was found from `absolute` on, as it is told: what is elsewhere, as it is.
  [[nodiscard]] std::string shown(const FilePath& path) const;

 private:
  FilePath _given;
  FilePath _absolute;
};

}  // namespace pelmora::host
