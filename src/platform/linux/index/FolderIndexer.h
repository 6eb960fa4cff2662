#pragma once

#include "platform/FileDescriptor.h"
#include "platform/Files.h"
#include "platform/linux/index/IndexTurn.h"
#include "platform/linux/index/MetadataStore.h"
#include "platform/linux/index/PatientInspector.h"
#include "platform/Log.h"

#include <functional>
#include <string>
#include <vector>

namespace pelmora::platform {

/// Brings what the store knows of a folder up to date: each file directly in it, hidden ones and
/// subfolders left out, is looked at, and those whose stamp is not the stored one are read.
/// Thread: one. Ownership: everything it was made with outlives it. Errors: of a folder that cannot
/// be listed all stays as it is, for it may be a disk that comes back; a file that cannot be read
/// has but what the file system knows of it, and a log line. Where that need not be so another
/// time, and while the inspector waits, files have that much too, and are left to be read later.
class FolderIndexer {
 public:
  struct Tools {
    const Files& files;
    Log& log;
    MetadataStore& store;
    IndexTurn& turn;
    PatientInspector& inspector;
    /// Whether the work is to end early; asked between batches.
    std::function<bool()> isOver;
  };

  explicit FolderIndexer(Tools tools) : _tools(std::move(tools)) {}

  /// Whether files that could not be read before are tried again, unchanged.
  enum class Unread { left, tried };

  struct Outcome {
    bool isListed = false;
    std::size_t fileCount = 0;  // of the folder
    bool hasChanged = false;    // some of them had to be read
    bool hasUnread = false;     // some of them are to be read later, by whichever saver
  };
  /// `batchDone` is called whenever the store knows more. Ends early when the store fails.
  Outcome update(const FilePath& folder, MetadataStore::FolderId id, Unread unread,
                 const std::function<void()>& batchDone);

  /// How many files are stored at once, and read while others have the next turn to wait for; fewer
  /// where few may be open.
  static constexpr std::size_t kBatch = 64;
  static constexpr std::size_t kTurn = 8 * kBatch;

 private:
  struct Folder;
  class Reading;

  [[nodiscard]] std::vector<std::string> changedFiles(
      const Folder& folder, const Listing& listing,
      std::unordered_map<std::string, IndexStamp> known, Outcome& outcome);
  [[nodiscard]] bool leadsSomewhere(const FilePath& link) const;
  [[nodiscard]] bool isEnough(const Folder& folder, const IndexStamp& stored, const IndexStamp& now,
                              Outcome& outcome) const;

  const Tools _tools;
};

}  // namespace pelmora::platform
