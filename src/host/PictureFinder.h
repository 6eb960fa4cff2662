#pragma once

#include "platform/Files.h"

#include <deque>
#include <functional>
#include <unordered_set>
#include <utility>
#include <vector>

namespace pelmora::host {

/// Finds the files that the saver would try to show if a folder were in its list, by the rules of
/// its walk: hidden entries and packages are left out; a link to a folder gives that folder's own
/// files, but directly in the first folder it counts as a file; no folder is looked into twice.
/// One order for all: level by level as the walk goes, each folder's entries by the bytes of their
/// names. Thread: one. Ownership: the files outlive it. Memory: one folder's names, and the paths
/// of the folders of a level.
class PictureFinder {
 public:
  struct Answers {
    std::function<void(const FilePath& file)> file;
    std::function<void(const FilePath& folder, const Error& why)> unreadable;
  };

  PictureFinder(const platform::Files& files, Answers answers)
      : _files(files), _answers(std::move(answers)) {}

  /// A folder that is not looked into on the way, such as the one that results are written to.
  void leaveOut(const FilePath& folder);
  /// A file is told as itself, whatever it is and whether or not it is there.
  void find(const FilePath& fileOrFolder);

 private:
  struct Entry;
  void visitBaseFolder(const FilePath& folder);
  void visit(const FilePath& folder);
  void visitTarget(const FilePath& alias);
  void visitEntries(const FilePath& folder, std::vector<Entry> entries);
  [[nodiscard]] bool isPackage(const FilePath& folder, const NameList& names) const;
  [[nodiscard]] std::vector<Entry> entriesOf(const FilePath& folder,
                                             const platform::Listing& listing) const;

  const platform::Files& _files;
  const Answers _answers;
  std::deque<FilePath> _waiting;  // folders to visit
  std::unordered_set<platform::FileIdentity, platform::FileIdentityHash> _visited;
};

}  // namespace pelmora::host
