#include "sources/AddFolderOp.h"

#include "sources/PMSourceList.h"

#include <utility>

namespace pelmora::sources {

AddFolderOp::AddFolderOp(FilePath folder, std::uint64_t forScreen, bool baseFolder,
                         platform::OperationQueue& addOpToQueue, PMSourceList& list,
                         SharedNames withSubfolders)
    : url(std::move(folder)),
      screen(forScreen),
      isBaseFolder(baseFolder),
      addToQueue(addOpToQueue),
      sourceList(list),
      subfolders(std::move(withSubfolders)) {}

void AddFolderOp::main() {
  sourceList.enumFolder(url, screen, isBaseFolder, addToQueue, *this, subfolders);
}

}  // namespace pelmora::sources
