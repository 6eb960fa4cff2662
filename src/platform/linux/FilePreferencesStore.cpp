#include "platform/linux/FilePreferencesStore.h"

#include "platform/AtomicFile.h"
#include "platform/FileDescriptor.h"
#include "platform/linux/FileLock.h"
#include "platform/linux/MakeFolders.h"
#include "platform/linux/XdgBaseFolders.h"
#include "platform/SystemError.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

namespace pelmora::platform {

namespace {

/// Far more than every setting and bookmark takes.
constexpr std::size_t kLargestFile = 16 << 20;

/// Waits until no other process writes the preferences, then keeps them from it while it lives; but
/// not for ever for one that hangs. The preferences themselves cannot be locked, as each writing
/// replaces them.
class WritingLock {
 public:
  static Result<WritingLock> take(const FilePath& file, const Patience& patience) {
    const FilePath beside(file.bytes() + ".lock");
    FileDescriptor descriptor(
        ::open(beside.c_str(), O_RDWR | O_CREAT | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!descriptor.isOpen()) return systemError(beside, errno);
    if (!lockFile(descriptor.get(), patience)) {
      if (errno == EWOULDBLOCK) return Error{beside.bytes() + ": Another program holds it locked"};
      return systemError(beside, errno);
    }
    return WritingLock(std::move(descriptor));
  }

 private:
  explicit WritingLock(FileDescriptor descriptor) : _descriptor(std::move(descriptor)) {}

  FileDescriptor _descriptor;
};

}  // namespace

FilePath defaultPreferencesPath() {
  const std::optional<FilePath> config = configFolder(processEnvironment());
  return config ? *config / "Pelmora" / "Preferences.plist" : FilePath();
}

FilePreferencesStore::FilePreferencesStore(FilePath file, Log& log,
                                           std::chrono::milliseconds patience)
    : _file(std::move(file)), _log(log), _patience(patience) {}

void FilePreferencesStore::registerDefaults(plist::Dictionary defaults) {
  _defaults = std::move(defaults);
}

std::optional<plist::Value> FilePreferencesStore::objectForKey(std::string_view key) const {
  const auto change = _changes.find(key);
  const bool isRemoved = change != _changes.end() && !change->second;
  if (change != _changes.end() && change->second) return change->second;
  reload();
  const auto stored = _stored.find(key);
  if (stored != _stored.end() && !isRemoved) return stored->second;
  const auto registered = _defaults.find(key);
  return registered == _defaults.end() ? std::nullopt : std::optional(registered->second);
}

plist::Dictionary FilePreferencesStore::storedValues() const {
  reload();
  plist::Dictionary values = _stored;
  for (const auto& [key, value] : _changes) {
    if (value) {
      values.insert_or_assign(key, *value);
    } else {
      values.erase(key);
    }
  }
  return values;
}

void FilePreferencesStore::setObject(std::string_view key, plist::Value value) {
  _changes.insert_or_assign(std::string(key), std::move(value));
}

void FilePreferencesStore::removeObject(std::string_view key) {
  _changes.insert_or_assign(std::string(key), std::nullopt);
}

Status FilePreferencesStore::synchronize() {
  if (_changes.empty()) return Done{};
  if (_file.empty()) return Error{"There is no folder for the preferences"};
  if (Status folder = makeFolders(_file.parent()); !folder) return folder;
  const Result<WritingLock> lock = WritingLock::take(_file, {.atMost = _patience});
  if (!lock) return lock.error();

  sweepTemporaryFiles(_file);
  plist::Dictionary merged = storedValues();
  // What cannot be read must not be lost for a change to one key.
  if (!_isReadable) return Error{_file.bytes() + ": The file cannot be read"};
  if (merged != _stored || !_stamp) {
    Status written = writeAtomically(_file, plist::writeBinary(merged));
    if (!written) return written;
    _stamp = stampOf(_file);
    _stored = std::move(merged);
  }
  _changes.clear();
  return Done{};
}

/// Reads the file if it is another than was last seen.
void FilePreferencesStore::reload() const {
  const std::optional<FileStamp> now = stampOf(_file);
  if (now == _stamp) return;
  _stamp = now;
  _stored.clear();
  _isReadable = true;
  if (!now) return;

  const Result<FileContents> contents = FileContents::read(_file, kLargestFile);
  if (contents) return parse(*contents);
  _isReadable = false;
  _log.print("Pelmora: Error reading preferences: %s", contents.error().message.c_str());
}

void FilePreferencesStore::parse(const FileContents& contents) const {
  _stamp = contents.stamp();
  Result<plist::Value> root = plist::read(contents.bytes());
  if (!root) return keepDamaged(contents, root.error().message);
  auto* values = root->get<plist::Dictionary>();
  if (!values) return keepDamaged(contents, "the property list is no dictionary");
  _stored = std::move(*values);
}

// A copy, not the file itself: another process may have replaced that by a good one meanwhile.
void FilePreferencesStore::keepDamaged(const FileContents& contents,
                                       const std::string& reason) const {
  const FilePath beside(_file.bytes() + ".damaged");
  const bool isKept = writeAtomically(beside, contents.bytes()).ok();
  _log.print("Pelmora: The preferences are damaged and not used (%s)%s%s", reason.c_str(),
             isKept ? "; kept as " : "", isKept ? beside.c_str() : "");
}

}  // namespace pelmora::platform
