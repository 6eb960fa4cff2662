#pragma once

#include "platform/linux/FileLock.h"
#include "platform/linux/index/SqliteDatabase.h"

#include <chrono>
#include <string>

namespace pelmora::platform {

/// A database that is one of ours, its tables made where it was empty, with the statements that the
/// store asks of it. Thread: one at a time. Errors: `SqliteError`; of another version is what has
/// other tables than we would make.
class StoreConnection {
 public:
  /// Others that write are waited for that long at a time.
  explicit StoreConnection(const std::string& path,
                           std::chrono::milliseconds patience = Patience().atMost);

  SqliteDatabase database;

  // Parameters and columns are as in their texts.
  SqliteStatement folderOfPath;
  SqliteStatement enterFolder;
  SqliteStatement enterFolderAs;
  SqliteStatement pathOfFolder;
  SqliteStatement stampsInFolder;
  SqliteStatement stampOfFile;
  SqliteStatement enterFile;
  SqliteStatement removeFile;
  SqliteStatement forgetFiles;
  SqliteStatement forgetFolders;
  SqliteStatement newestRevision;
  SqliteStatement attributesOfFile;

  /// The parameters of `enterFile` before those of the `storedColumns`.
  static constexpr int kOwnParameters = 7;
  /// The names of the files in a folder (?1) that are newer than a revision (?2), and for which a
  /// condition holds.
  [[nodiscard]] SqliteStatement prepareMatches(const std::string& condition);

 private:
  void configure();
  void checkTables();
  void makeTables();
  void prepareStatements();
};

}  // namespace pelmora::platform
