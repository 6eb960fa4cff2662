#include "platform/fake/FakeBookmarks.h"

#include <string>

namespace pelmora::platform {

Result<plist::Bytes> FakeBookmarks::make(const FilePath& folder) const {
  if (_unmakeable.contains(folder)) return Error{"no bookmark for " + folder.bytes()};
  return bookmarkOf(folder);
}

Result<FilePath> FakeBookmarks::resolve(const plist::Bytes& bookmark) const {
  const FilePath folder(std::string(bookmark.begin(), bookmark.end()));
  if (folder.empty()) return Error{"empty bookmark"};
  if (_unresolvable.contains(folder)) return Error{folder.bytes() + " is gone"};
  return folder;
}

plist::Bytes FakeBookmarks::bookmarkOf(const FilePath& folder) {
  return {folder.bytes().begin(), folder.bytes().end()};
}

}  // namespace pelmora::platform
