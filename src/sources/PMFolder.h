#pragma once

#include "platform/Files.h"
#include "shared/FilePath.h"
#include "shared/NameList.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::sources {

class ContentsReader;

/// A folder that directly holds files to show: their names, and the three values that decide how
/// often and where they are shown. Subfolders have records of their own.
/// Thread: made on an enumeration thread, then guarded by the list's `dirItemsLock`; `url`,
/// `identity` and `filenames` no longer change then.
struct PMFolder {
  /// Where a record's names come from: it reads them with `fileMan`, or it is given files or names.
  struct Contents {
    const ContentsReader* fileMan = nullptr;
    std::optional<std::vector<FilePath>> contents = std::nullopt;
    SharedNames contentNames = nullptr;
  };

  PMFolder() = default;
  /// Throws `std::logic_error` unless the names come from exactly one side; of files and names the
  /// names count.
  PMFolder(FilePath folder, bool isBaseFolder, const Contents& from, double withPriority,
           std::string forScreens, std::uint64_t days);

  bool isBaseFolder = false;  // itself a source entry's folder
  FilePath url;
  std::optional<platform::FileIdentity> identity;  // read once, when the folder was found
  SharedNames filenames = std::make_shared<const NameList>();  // as listed or cached; never null
  std::vector<std::string> spotlightFilenames;  // files that the metadata filter admitted
  std::string priorityTag;                      // kept, never set or read
  double priority = 0;                          // "chance" / 100
  std::string screens;                          // screens string
  std::uint64_t days = 0;                       // days mask

  void addSpotlightFilename(std::string name);
  [[nodiscard]] std::string description() const;
};

}  // namespace pelmora::sources
