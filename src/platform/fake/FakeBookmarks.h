#pragma once

#include "platform/Bookmarks.h"

#include <set>

namespace pelmora::platform {

/// Bookmarks that are the path's bytes and look at no disk. Thread: any, once told what fails.
class FakeBookmarks : public Bookmarks {
 public:
  [[nodiscard]] Result<plist::Bytes> make(const FilePath& folder) const override;
  [[nodiscard]] Result<FilePath> resolve(const plist::Bytes& bookmark) const override;

  /// The bookmark that `make` gives for a folder, whether or not it is told to fail.
  [[nodiscard]] static plist::Bytes bookmarkOf(const FilePath& folder);

  /// From now on no bookmark is made for the folder, or none of it resolves.
  void failToMake(const FilePath& folder) { _unmakeable.insert(folder); }
  void failToResolve(const FilePath& folder) { _unresolvable.insert(folder); }

 private:
  std::set<FilePath> _unmakeable;
  std::set<FilePath> _unresolvable;
};

}  // namespace pelmora::platform
