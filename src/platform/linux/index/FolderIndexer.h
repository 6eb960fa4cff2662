#pragma once

#include "platform/FileDescriptor.h"
#include "platform/Files.h"
#include "platform/linux/index/IndexTurn.h"
#include "platform/linux/index/MetadataStore.h"
#include "platform/Log.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace pelmora::platform {

/// Brings what the store knows of a folder up to date: each file directly in it, hidden ones and
/// subfolders left out, is looked at, and those whose stamp is not the stored one are read.
/// Thread: one. Ownership: everything it was made with outlives it. Errors: a folder that cannot be
/// listed has no files; a file that cannot be read has but what the file system knows of it, and a
/// log line.
class FolderIndexer {
 public:
  using Take = std::function<void(std::size_t index, Result<metadata::FileMetadata> embedded)>;
  /// Reads what is embedded in open files, in their order.
  using Inspect = std::function<void(std::span<const FileDescriptor> files, const Take& take)>;

  struct Tools {
    const Files& files;
    Log& log;
    MetadataStore& store;
    IndexTurn& turn;
    Inspect inspect;
    /// Whether the work is to end early; asked between batches.
    std::function<bool()> isOver;
  };

  explicit FolderIndexer(Tools tools) : _tools(std::move(tools)) {}

  /// Gives back how many files the folder has. `batchDone` is called whenever the store knows more.
  std::size_t update(const FilePath& folder, MetadataStore::FolderId id,
                     const std::function<void()>& batchDone);

  /// How many files are read at once.
  static constexpr std::size_t kBatch = 64;

 private:
  struct Folder;

  [[nodiscard]] std::vector<std::string> changedFiles(
      const Folder& folder, std::unordered_map<std::string, IndexStamp> known,
      std::size_t& fileCount);
  void readBatch(const Folder& folder, std::span<const std::string> names);
  [[nodiscard]] std::vector<MetadataStore::Entry> read(const Folder& folder,
                                                       std::span<const std::string> names);

  const Tools _tools;
};

}  // namespace pelmora::platform
