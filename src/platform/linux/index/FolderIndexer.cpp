#include "platform/linux/index/FolderIndexer.h"

#include "platform/linux/index/FileAttributes.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <span>
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

/// How many files of a batch are open at most. There are two batches at a time, and all other work
/// of the process is to have three descriptors of four.
std::size_t filesAtOnce() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) return FolderIndexer::kBatch;
  return std::clamp<rlim_t>(limit.rlim_cur / 8, 1, FolderIndexer::kBatch);
}

bool isWantOfDescriptors(int error) { return error == EMFILE || error == ENFILE; }

}  // namespace

struct FolderIndexer::Folder {
  FilePath path;
  MetadataStore::FolderId id = 0;
  FileDescriptor descriptor;
  Unread unread = Unread::tried;
};

/// A turn's worth of files. While the inspector looks into those of one batch, the batch before is
/// stored and the files of the next are opened, so that neither process waits for the other.
class FolderIndexer::Reading {
 public:
  Reading(const FolderIndexer& indexer, const Folder& folder, std::span<const std::string> names,
          Outcome& outcome, const std::function<void()>& batchDone)
      : _indexer(indexer),
        _tools(indexer._tools),
        _folder(folder),
        _names(names),
        _outcome(outcome),
        _batchDone(batchDone),
        _failures(_tools.store.failures()) {}

  void run() {
    Batch batch;
    fill(batch);
    while (!batch.entries.empty()) {
      Batch next;
      inspect(batch, next);
      store();
      _read = std::move(batch.entries);
      batch = std::move(next);
      fill(batch);
    }
    store();
  }

 private:
  struct Batch {
    std::vector<MetadataStore::Entry> entries;
    std::vector<FileDescriptor> files;  // of the entries; closed where one cannot be opened
  };

  [[nodiscard]] bool isOver() const {
    return _tools.isOver() || _tools.store.failures() != _failures;
  }

  void fill(Batch& batch) {
    while (openOne(batch, !batch.entries.empty())) {
    }
  }

  /// False when it is full, there are no more, or files that are open have to be closed first.
  bool openOne(Batch& batch, bool areOthersOpen) {
    while (!_names.empty() && batch.entries.size() < _filesAtOnce && !isOver()) {
      const std::string& name = _names.front();
      if (!isReadByAnother(name)) {
        FileDescriptor file = openFile(_folder.descriptor.get(), name);
        const int error = file.isOpen() ? 0 : errno;
        if (areOthersOpen && isWantOfDescriptors(error)) return false;
        _names = _names.subspan(1);
        if (enter(name, std::move(file), error, batch)) return true;
      } else {
        _names = _names.subspan(1);
      }
    }
    return false;
  }

  /// Whether another saver has read it meanwhile.
  bool isReadByAnother(const std::string& name) {
    const std::optional<IndexStamp> stored = _tools.store.stampOf(_folder.id, name);
    const auto now = stored ? stampOf(_folder.descriptor.get(), name.c_str()) : std::nullopt;
    return now && _indexer.isEnough(_folder, *stored, *now, _outcome);
  }

  /// False: it is gone meanwhile.
  bool enter(const std::string& name, FileDescriptor file, int error, Batch& batch) const {
    std::optional<FileAttributes> attributes;
    if (file.isOpen()) {
      attributes = fileAttributes(file.get(), name);
    } else if (const auto stamp = stampOf(_folder.descriptor.get(), name.c_str())) {
      // Its name can be searched for all the same.
      attributes = FileAttributes{isForGood(error) ? *stamp : unread(*stamp), {}};
    }
    if (!attributes) return false;
    batch.entries.push_back({name, attributes->stamp, std::move(attributes->metadata)});
    batch.files.push_back(std::move(file));
    return true;
  }

  void inspect(Batch& batch, Batch& next) {
    std::size_t looked = 0;
    const auto take = [&](std::size_t index, EmbeddedMetadata embedded) {
      looked = index + 1;
      complete(batch.entries[index], batch.files[index], std::move(embedded));
      store();
      (void)openOne(next, true);
    };
    _tools.inspector.inspect(batch.files, take);
    std::vector<MetadataStore::Entry>& entries = batch.entries;
    if (_tools.isOver()) entries.resize(looked);
    for (; looked < entries.size(); ++looked) entries[looked].stamp = unread(entries[looked].stamp);
  }

  void complete(MetadataStore::Entry& entry, const FileDescriptor& file,
                EmbeddedMetadata embedded) const {
    if (embedded) {
      entry.metadata = joined(std::move(entry.metadata), *embedded);
      return;
    }
    _tools.log.print("Pelmora: Cannot read the metadata of '%s': %s",
                     (_folder.path / entry.name).c_str(), embedded.error().message.c_str());
    const bool isPassing = embedded.isPassing || (file.isOpen() && isOutOfReach(file.get()));
    if (isPassing) entry.stamp = unread(entry.stamp);
  }

  void store() {
    const std::vector<MetadataStore::Entry> entries = std::exchange(_read, {});
    if (entries.empty()) return;
    _tools.store.put(_folder.id, _folder.path, entries);
    for (const auto& entry : entries) _outcome.hasUnread |= isUnread(entry.stamp);
    _batchDone();
  }

  const FolderIndexer& _indexer;
  const Tools& _tools;
  const Folder& _folder;
  std::span<const std::string> _names;  // of files that are not opened yet
  Outcome& _outcome;
  const std::function<void()>& _batchDone;
  const std::size_t _filesAtOnce = filesAtOnce();
  const std::uint64_t _failures;            // of the store, before
  std::vector<MetadataStore::Entry> _read;  // and not stored yet
};

FolderIndexer::Outcome FolderIndexer::update(const FilePath& path, MetadataStore::FolderId id,
                                             Unread unread,
                                             const std::function<void()>& batchDone) {
  // Listed first: what does not answer is then not waited for here, which would have no limit.
  const Result<std::shared_ptr<const Listing>> listing = _tools.files.list(path, FinalLink::follow);
  Outcome outcome;
  if (!listing) return outcome;
  const Folder folder{
      path, id, FileDescriptor(::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)), unread};
  outcome.isListed = folder.descriptor.isOpen();
  if (!outcome.isListed) return outcome;
  const std::uint64_t failures = _tools.store.failures();
  const auto isOver = [&] { return _tools.isOver() || _tools.store.failures() != failures; };
  const std::vector<std::string> changed =
      changedFiles(folder, **listing, _tools.store.filesIn(id), outcome);
  outcome.hasChanged = !changed.empty();
  for (std::size_t first = 0; first < changed.size() && !isOver(); first += kTurn) {
    const std::size_t count = std::min(kTurn, changed.size() - first);
    const IndexTurn::Held held = _tools.turn.take();
    Reading(*this, folder, std::span(changed).subspan(first, count), outcome, batchDone).run();
  }
  return outcome;
}

/// The names of the files that have to be read; those that are gone are taken out of the store.
std::vector<std::string> FolderIndexer::changedFiles(
    const Folder& folder, const Listing& listing, std::unordered_map<std::string, IndexStamp> known,
    Outcome& outcome) {
  std::vector<std::string> changed;
  auto kind = listing.kinds.begin();
  for (const std::string_view entry : *listing.names) {
    const EntryKind entryKind = *kind++;
    if (entryKind == EntryKind::folder) continue;
    std::string name(entry);
    if (entryKind == EntryKind::alias && !leadsSomewhere(folder.path / name)) {
      if (_tools.files.isStalled(folder.path / name)) {
        outcome.hasUnread = true;
        known.erase(name);
      }
      continue;
    }
    const std::optional<IndexStamp> stamp = stampOf(folder.descriptor.get(), name.c_str());
    if (!stamp) continue;
    ++outcome.fileCount;
    const auto stored = known.find(name);
    const bool isKnown = stored != known.end();
    const bool isUnchanged = isKnown && isEnough(folder, stored->second, *stamp, outcome);
    if (isKnown) known.erase(stored);
    if (!isUnchanged) changed.push_back(std::move(name));
  }
  // At the end nothing answers any more, and links that are left out are not gone.
  if (_tools.isOver()) return changed;
  std::vector<std::string> gone;
  for (const auto& [name, stamp] : known) gone.push_back(name);
  if (!gone.empty()) _tools.store.remove(folder.id, gone);
  return changed;
}

/// A link may lead to what does not answer, and that is not waited for without limit. All stays as
/// it is then, and is looked at again.
bool FolderIndexer::leadsSomewhere(const FilePath& link) const {
  return _tools.files.facts(link, FinalLink::follow).has_value();
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

}  // namespace pelmora::platform
