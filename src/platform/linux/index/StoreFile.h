#pragma once

#include "platform/FileDescriptor.h"
#include "platform/linux/FileLock.h"
#include "shared/FilePath.h"
#include "shared/Result.h"

#include <sys/types.h>

#include <optional>

namespace pelmora::platform {

/// The file of a database that several processes may find damaged at the same time: who opens it
/// or takes it away holds a lock on a file beside it meanwhile, so that nobody takes away what
/// another has just begun. Thread: one at a time; two objects on one file lock each other out.
class StoreFile {
 public:
  /// Which file it is that lies at the path.
  struct Identity {
    dev_t device = 0;
    ino_t inode = 0;
    bool operator==(const Identity&) const = default;
  };
  using Lock = FileDescriptor;

  explicit StoreFile(FilePath path, Patience patience = {})
      : _path(std::move(path)), _patience(std::move(patience)) {}

  /// Without symbolic links above it, after it was locked once.
  [[nodiscard]] const FilePath& path() const { return _path; }

  /// Waits for the others, with patience; until the descriptor is closed. The folder is made if it
  /// is missing.
  [[nodiscard]] Result<Lock> lock();
  /// Makes an empty file for the user alone, where there is none or something that is no file.
  [[nodiscard]] Status make();
  /// Takes away the file and what SQLite keeps beside it.
  void takeAway();
  void takeAwayLog();
  /// nullopt: there is none. One system call.
  [[nodiscard]] std::optional<Identity> identity() const { return identityWith(""); }
  /// Of the log that SQLite writes ahead.
  [[nodiscard]] std::optional<Identity> logIdentity() const { return identityWith("-wal"); }

 private:
  [[nodiscard]] std::optional<Identity> identityWith(const char* suffix) const;
  void unlinkWith(const char* suffix);

  FilePath _path;
  Patience _patience;
};

}  // namespace pelmora::platform
