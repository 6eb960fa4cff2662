#include "host/IndexFile.h"

#include "platform/linux/index/MetadataIndex.h"
#include "platform/linux/MakeFolders.h"
#include "view/PelmoraView.h"

namespace pelmora::host {

FilePath indexFile(const platform::UserFolders& folders) {
  const std::vector<FilePath> caches = folders.caches();
  if (caches.empty()) return {};
  const FilePath folder = caches.front() / view::kApplicationName;
  if (!platform::makeFolders(folder)) return {};
  return folder / platform::MetadataIndex::kFileName;
}

}  // namespace pelmora::host
