#pragma once

#include "platform/Services.h"
#include "shared/FilePath.h"
#include "shared/NameList.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pelmora::cache {
class FolderCache;
}

namespace pelmora::sources {

/// A folder that directly holds files to show: their names, and the three values that decide how
/// often and where they are shown. Subfolders have records of their own.
/// Thread: made on an enumeration thread, then guarded by the list's `dirItemsLock`.
struct PMFolder {
  bool isBaseFolder = false;  // itself a source entry's folder
  FilePath url;
  SharedNames filenames;                       // in the order of the listing or of the cache
  std::vector<std::string> spotlightFilenames;  // files that the metadata filter admitted
  std::string priorityTag;                     // kept, never set or read
  double priority = 0;                         // "chance" / 100
  std::string screens;                         // screens string
  std::uint64_t days = 0;                      // days mask

  void addSpotlightFilename(std::string name);
  [[nodiscard]] std::string description() const;
};

}  // namespace pelmora::sources
