#include "platform/linux/index/FolderIndexer.h"

#include "platform/linux/index/FileAttributes.h"

#include <fcntl.h>

#include <algorithm>
#include <utility>

namespace pelmora::platform {

namespace {

FileDescriptor openFile(int folder, const std::string& name) {
  // Without O_NONBLOCK, opening a named pipe would wait for its writer.
  return FileDescriptor(
      ::openat(folder, name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
}

}  // namespace

struct FolderIndexer::Folder {
  FilePath path;
  MetadataStore::FolderId id = 0;
  FileDescriptor descriptor;
};

std::size_t FolderIndexer::update(const FilePath& path, MetadataStore::FolderId id,
                                  const std::function<void()>& batchDone) {
  const Folder folder{path, id,
                      FileDescriptor(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC))};
  std::size_t fileCount = 0;
  const std::vector<std::string> changed =
      changedFiles(folder, _tools.store.filesIn(id), fileCount);
  for (std::size_t first = 0; first < changed.size() && !_tools.isOver(); first += kBatch) {
    const std::size_t count = std::min(kBatch, changed.size() - first);
    readBatch(folder, std::span(changed).subspan(first, count));
    batchDone();
  }
  return fileCount;
}

/// The names of the files that have to be read; those that are gone are taken out of the store.
std::vector<std::string> FolderIndexer::changedFiles(
    const Folder& folder, std::unordered_map<std::string, IndexStamp> known,
    std::size_t& fileCount) {
  std::vector<std::string> changed;
  const auto listing = _tools.files.list(folder.path, FinalLink::follow);
  if (listing && folder.descriptor.isOpen()) {
    auto kind = (*listing)->kinds.begin();
    for (const std::string_view entry : *(*listing)->names) {
      if (*kind++ == EntryKind::folder) continue;
      std::string name(entry);
      const std::optional<IndexStamp> stamp = stampOf(folder.descriptor.get(), name.c_str());
      if (!stamp) continue;
      ++fileCount;
      const auto stored = known.find(name);
      const bool isKnown = stored != known.end();
      const bool isUnchanged = isKnown && stored->second == *stamp;
      if (isKnown) known.erase(stored);
      if (!isUnchanged) changed.push_back(std::move(name));
    }
  }
  std::vector<std::string> gone;
  for (const auto& [name, stamp] : known) gone.push_back(name);
  if (!gone.empty()) _tools.store.remove(folder.id, gone);
  return changed;
}

void FolderIndexer::readBatch(const Folder& folder, std::span<const std::string> names) {
  const IndexTurn::Held held = _tools.turn.take();
  std::vector<std::string> unread;
  for (const std::string& name : names) {
    // Another saver may have read it meanwhile.
    const std::optional<IndexStamp> stored = _tools.store.stampOf(folder.id, name);
    if (!stored || stored != stampOf(folder.descriptor.get(), name.c_str())) unread.push_back(name);
  }
  const std::vector<MetadataStore::Entry> entries = read(folder, unread);
  if (!entries.empty()) _tools.store.put(folder.id, folder.path, entries);
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
    } else if (const auto stamp = stampOf(folder.descriptor.get(), name.c_str())) {
      // Its name can be searched for all the same.
      attributes = FileAttributes{*stamp, {}};
    }
    if (!attributes) continue;  // gone meanwhile
    entries.push_back({name, attributes->stamp, std::move(attributes->metadata)});
    files.push_back(std::move(file));
  }
  _tools.inspect(files, [&](std::size_t index, Result<metadata::FileMetadata> embedded) {
    MetadataStore::Entry& entry = entries[index];
    if (embedded) {
      entry.metadata = joined(std::move(entry.metadata), *embedded);
    } else {
      _tools.log.print("Pelmora: Cannot read the metadata of '%s': %s",
                       (folder.path / entry.name).c_str(), embedded.error().message.c_str());
    }
  });
  return entries;
}

}  // namespace pelmora::platform
