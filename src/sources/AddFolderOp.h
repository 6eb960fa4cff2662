#pragma once

#include "platform/OperationQueue.h"
#include "shared/FilePath.h"
#include "shared/NameList.h"

#include <cstdint>

namespace pelmora::sources {

class PMSourceList;

/// Enumerates one folder: the operation of the source list's queue, one for each folder of a walk.
/// Thread: made anywhere, run on a worker. Ownership: the list and the queue outlive it.
class AddFolderOp : public platform::Operation {
 public:
  /// `withSubfolders` are the names of the folder's subfolders, where the walk came across them
  /// already; null otherwise.
  AddFolderOp(FilePath folder, std::uint64_t forScreen, bool isBaseFolder,
              platform::OperationQueue& addOpToQueue, PMSourceList& sourceList,
              SharedNames withSubfolders = nullptr);

  void main() override;

  const FilePath url;
  const std::uint64_t screen;
  const bool isBaseFolder;
  platform::OperationQueue& addToQueue;
  PMSourceList& sourceList;
  const SharedNames subfolders;
};

}  // namespace pelmora::sources
