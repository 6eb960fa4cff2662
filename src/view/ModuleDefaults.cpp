#include "view/ModuleDefaults.h"

#include "sources/SourceEntry.h"

namespace pelmora::view {

plist::Dictionary moduleDefaults(const platform::UserFolders& userFolders,
                                 const platform::Bookmarks& bookmarks) {
  return {
      {"Sources", sources::makeDefaultSources(userFolders, bookmarks)},
      {"UsePolaroid", 1},
      {"ShowiTunesTrack", 0},
      {"NumImages", kDefaultNumImages},
      {"Delay", kDefaultDelay},
      {"iTunesTrackType", 1},
  };
}

}  // namespace pelmora::view
