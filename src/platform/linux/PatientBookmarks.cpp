#include "platform/linux/PatientBookmarks.h"

#include "platform/linux/BookmarkRecord.h"

#include <utility>

namespace pelmora::platform {

PatientBookmarks::PatientBookmarks(std::shared_ptr<const Bookmarks> bookmarks,
                                   const PatientFiles& files)
    : _bookmarks(std::move(bookmarks)), _files(files) {}

Result<plist::Bytes> PatientBookmarks::make(const FilePath& folder) const {
  auto made =
      _files.wait(folder, [bookmarks = _bookmarks, folder] { return bookmarks->make(folder); });
  if (!made) return Error{folder.bytes() + ": it does not answer"};
  return *std::move(made);
}

Result<FilePath> PatientBookmarks::resolve(const plist::Bytes& bookmark) const {
  const Result<BookmarkRecord> record = BookmarkRecord::decode(bookmark);
  if (!record) return record.error();
  auto resolved = _files.wait(
      record->path, [bookmarks = _bookmarks, bookmark] { return bookmarks->resolve(bookmark); });
  if (!resolved) return Error{record->path.bytes() + ": it does not answer"};
  return *std::move(resolved);
}

}  // namespace pelmora::platform
