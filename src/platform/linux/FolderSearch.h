#pragma once

#include "platform/Clock.h"
#include "shared/FilePath.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::platform {

/// How much may be spent on looking for a folder.
struct SearchLimits {
  std::size_t reads = 40'000;  // of a block of entries; a folder takes two or more
  double seconds = 0.5;        // of media time; a folder that is gone costs them at every start
};

/// Looks for a folder by its inode, breadth first, below one place after another on one filesystem,
/// until it is found or the limits are reached. Hidden folders are passed by: what was thrown away
/// is not to be found again. Mounts nothing and looks into no other mount. Thread: any, one at a
/// time.
class FolderSearch {
 public:
  FolderSearch(std::uint64_t inode, const Clock& clock, SearchLimits limits);

  /// The first folder of that inode below `start` that `accept` takes. What lies at or below
  /// `known` is passed by: it was searched before, or is empty.
  [[nodiscard]] std::optional<FilePath> find(const FilePath& start, const FilePath& known,
                                             const std::function<bool(const FilePath&)>& accept);

 private:
  struct Subfolder {
    std::uint64_t inode = 0;
    std::string name;
  };

  [[nodiscard]] bool mayGoOn() const;
  /// Those that are not hidden, and entries whose type the filesystem does not tell.
  [[nodiscard]] std::vector<Subfolder> subfoldersOf(const FilePath& folder);

  const std::uint64_t _inode;
  const Clock& _clock;
  std::size_t _readsLeft;
  const double _deadline;
};

}  // namespace pelmora::platform
