#pragma once

#include "shared/FilePath.h"

#include <vector>

namespace pelmora::bench {

/// Photographs with what cameras and people write into them: Exif (of some with a place), IPTC, XMP
/// and tags of the file system. Each is a file of its own, some 15 KB, with a title and a date of
/// its own; the rest is one of a few hundred kinds.
struct TaggedPhotos {
  std::vector<FilePath> folders;
  int filesInEach = 0;
  bool hasTags = false;  // whether the file system took them

  /// All of them, folder by folder.
  [[nodiscard]] std::vector<FilePath> files() const;
};

/// Makes them in `root`, and waits until they are on the disk, so that nothing is written later.
[[nodiscard]] TaggedPhotos makeTaggedPhotos(const FilePath& root, int folders, int filesInEach);

}  // namespace pelmora::bench
