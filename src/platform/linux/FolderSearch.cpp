#include "platform/linux/FolderSearch.h"

#include "platform/FileDescriptor.h"
#include "platform/linux/FolderEntries.h"
#include "platform/linux/FolderIdentity.h"

#include <fcntl.h>

#include <deque>

namespace pelmora::platform {

FolderSearch::FolderSearch(std::uint64_t inode, const Clock& clock, SearchLimits limits)
    : _inode(inode),
      _clock(clock),
      _readsLeft(limits.reads),
      _deadline(clock.mediaTime() + limits.seconds) {}

bool FolderSearch::mayGoOn() const { return _readsLeft > 0 && _clock.mediaTime() < _deadline; }

std::optional<FilePath> FolderSearch::find(const FilePath& start, const FilePath& known,
                                           const std::function<bool(const FilePath&)>& accept) {
  const std::optional<FolderIdentity> origin = folderIdentityOfNoLink(start);
  if (!origin) return std::nullopt;
  std::deque<FilePath> waiting{start};
  for (; !waiting.empty() && mayGoOn(); waiting.pop_front()) {
    const FilePath& folder = waiting.front();
    // Asked before it is opened, since opening would mount what is mounted on demand.
    const std::optional<FolderIdentity> identity = folderIdentityOfNoLink(folder);
    if (!identity || identity->device != origin->device) continue;
    for (const Subfolder& subfolder : subfoldersOf(folder)) {
      const FilePath path = folder / subfolder.name;
      if (subfolder.inode == _inode && accept(path)) return path;
      // What the limits keep from being read need not wait for it.
      if (path != known && waiting.size() <= _readsLeft) waiting.push_back(path);
    }
  }
  return std::nullopt;
}

std::vector<FolderSearch::Subfolder> FolderSearch::subfoldersOf(const FilePath& folder) {
  std::vector<Subfolder> subfolders;
  const FileDescriptor descriptor(
      ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW));
  const auto take = [&subfolders](const dirent64& entry) {
    const bool maybeFolder = entry.d_type == DT_DIR || entry.d_type == DT_UNKNOWN;
    const bool hidden = entry.d_name[0] == '.';
    if (maybeFolder && !hidden) subfolders.push_back({entry.d_ino, entry.d_name});
  };
  Reading reading = descriptor.isOpen() ? Reading::more : Reading::failed;
  while (reading == Reading::more && mayGoOn()) {
    --_readsLeft;
    reading = readSomeEntries(descriptor.get(), take);
  }
  return subfolders;
}

}  // namespace pelmora::platform
