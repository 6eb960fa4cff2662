#include "platform/linux/index/FolderIndexer.h"

#include "platform/linux/index/FileAttributes.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace pelmora::platform {

namespace {

FileDescriptor openFile(int folder, const std::string& name) {
  // Without O_NONBLOCK, opening a named pipe would wait for its writer.
  return FileDescriptor(
      ::openat(folder, name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
}

bool isUnread(const IndexStamp& stamp) { return stamp.changeNanoseconds < 0; }

/// As what a file is entered that was not looked into: never the stamp of a file.
IndexStamp unread(IndexStamp stamp) {
  if (!isUnread(stamp)) stamp.changeNanoseconds = -1 - stamp.changeNanoseconds;
  return stamp;
}

/// Whether a file that cannot be opened can't be until it changes, rather than for want of
/// descriptors or of a disk that answers.
bool isForGood(int error) {
  switch (error) {
    case EPERM:
    case EACCES:
    case ELOOP:
    case ENOENT:
    case ENXIO:
    case ENODEV:
      return true;
    default:
      return false;
  }
}

/// Whether its disk, and not what is in it, keeps an open file from being read.
bool isOutOfReach(int file) {
  char first = 0;
  return ::pread(file, &first, 1, 0) < 0;
}

}  // namespace

struct FolderIndexer::Folder {
  FilePath path;
  MetadataStore::FolderId id = 0;
  FileDescriptor descriptor;
  Unread unread = Unread::tried;
};

FolderIndexer::Outcome FolderIndexer::update(const FilePath& path, MetadataStore::FolderId id,
                                             Unread unread,
                                             const std::function<void()>& batchDone) {
  const Folder folder{
      path, id, FileDescriptor(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)), unread};
  Outcome outcome;
  const std::uint64_t failures = _tools.store.failures();
  const auto isOver = [&] { return _tools.isOver() || _tools.store.failures() != failures; };
  const std::vector<std::string> changed = changedFiles(folder, _tools.store.filesIn(id), outcome);
  outcome.hasChanged = !changed.empty();
  for (std::size_t first = 0; first < changed.size() && !isOver(); first += kBatch) {
    const std::size_t count = std::min(kBatch, changed.size() - first);
    readBatch(folder, std::span(changed).subspan(first, count), outcome);
    batchDone();
  }
  return outcome;
}

/// The names of the files that have to be read; those that are gone are taken out of the store.
std::vector<std::string> FolderIndexer::changedFiles(
    const Folder& folder, std::unordered_map<std::string, IndexStamp> known, Outcome& outcome) {
  std::vector<std::string> changed;
  const auto listing = _tools.files.list(folder.path, FinalLink::follow);
  outcome.isListed = listing && folder.descriptor.isOpen();
  if (!outcome.isListed) return changed;
  auto kind = (*listing)->kinds.begin();
  for (const std::string_view entry : *(*listing)->names) {
    if (*kind++ == EntryKind::folder) continue;
    std::string name(entry);
    const std::optional<IndexStamp> stamp = stampOf(folder.descriptor.get(), name.c_str());
    if (!stamp) continue;
    ++outcome.fileCount;
    const auto stored = known.find(name);
    const bool isKnown = stored != known.end();
    const bool isUnchanged = isKnown && isEnough(folder, stored->second, *stamp, outcome);
    if (isKnown) known.erase(stored);
    if (!isUnchanged) changed.push_back(std::move(name));
  }
  std::vector<std::string> gone;
  for (const auto& [name, stamp] : known) gone.push_back(name);
  if (!gone.empty()) _tools.store.remove(folder.id, gone);
  return changed;
}

/// Whether there is no more to be known of a file now than what it was stored with.
bool FolderIndexer::isEnough(const Folder& folder, const IndexStamp& stored, const IndexStamp& now,
                             Outcome& outcome) const {
  if (stored == now) return true;
  const bool isLeft = folder.unread == Unread::left || _tools.inspector.isWaiting();
  if (stored != unread(now) || !isLeft) return false;
  outcome.hasUnread = true;
  return true;
}

void FolderIndexer::readBatch(const Folder& folder, std::span<const std::string> names,
                              Outcome& outcome) {
  const IndexTurn::Held held = _tools.turn.take();
  std::vector<std::string> toRead;
  for (const std::string& name : names) {
    // Another saver may have read it meanwhile.
    const std::optional<IndexStamp> stored = _tools.store.stampOf(folder.id, name);
    const auto now = stored ? stampOf(folder.descriptor.get(), name.c_str()) : std::nullopt;
    if (!now || !isEnough(folder, *stored, *now, outcome)) toRead.push_back(name);
  }
  const std::vector<MetadataStore::Entry> entries = read(folder, toRead);
  if (entries.empty()) return;
  _tools.store.put(folder.id, folder.path, entries);
  for (const auto& entry : entries) outcome.hasUnread |= isUnread(entry.stamp);
}

std::vector<MetadataStore::Entry> FolderIndexer::read(const Folder& folder,
                                                      std::span<const std::string> names) {
  std::vector<MetadataStore::Entry> entries;
  std::vector<FileDescriptor> files;
  for (const std::string& name : names) {
    FileDescriptor file = openFile(folder.descriptor.get(), name);
    std::optional<FileAttributes> attributes;
    if (file.isOpen()) {
      attributes = fileAttributes(file.get(), name);
    } else {
      const bool isFinal = isForGood(errno);
      const auto stamp = stampOf(folder.descriptor.get(), name.c_str());
      // Its name can be searched for all the same.
      if (stamp) attributes = FileAttributes{isFinal ? *stamp : unread(*stamp), {}};
    }
    if (!attributes) continue;  // gone meanwhile
    entries.push_back({name, attributes->stamp, std::move(attributes->metadata)});
    files.push_back(std::move(file));
  }
  inspect(folder, files, entries);
  return entries;
}

void FolderIndexer::inspect(const Folder& folder, std::span<const FileDescriptor> files,
                            std::vector<MetadataStore::Entry>& entries) {
  std::size_t looked = 0;
  const auto take = [&](std::size_t index, EmbeddedMetadata embedded) {
    looked = index + 1;
    MetadataStore::Entry& entry = entries[index];
    if (embedded) {
      entry.metadata = joined(std::move(entry.metadata), *embedded);
    } else {
      _tools.log.print("Pelmora: Cannot read the metadata of '%s': %s",
                       (folder.path / entry.name).c_str(), embedded.error().message.c_str());
      const FileDescriptor& file = files[index];
      const bool isPassing = embedded.isPassing || (file.isOpen() && isOutOfReach(file.get()));
      if (isPassing) entry.stamp = unread(entry.stamp);
    }
  };
  _tools.inspector.inspect(files, take);
  if (_tools.isOver()) entries.resize(looked);
  for (; looked < entries.size(); ++looked) entries[looked].stamp = unread(entries[looked].stamp);
}

}  // namespace pelmora::platform
