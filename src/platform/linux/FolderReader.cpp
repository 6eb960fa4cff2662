#include "platform/linux/FolderReader.h"

#include "platform/linux/DesktopEntry.h"
#include "platform/linux/FolderEntries.h"
#include "platform/linux/SmallFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>

namespace pelmora::platform {

namespace {

constexpr const char* kHiddenListName = ".hidden";
constexpr std::size_t kMaxHiddenListBytes = 1024 * 1024;

/// The entries of one folder as they come from the kernel.
class EntryCollector {
 public:
  explicit EntryCollector(int descriptor) : _descriptor(descriptor) {}

  void take(const dirent64& entry) {
    const std::string_view name(entry.d_name);
    if (name.starts_with('.')) {
      _sawHiddenList = _sawHiddenList || name == kHiddenListName;
      return;
    }
    const std::optional<EntryKind> kind = kindOf(entry, name);
    if (kind && _names.append(name)) _kinds.push_back(*kind);
  }

  void finish(Listing& listing) {
    listing.names = _names.finish();
    listing.kinds = std::move(_kinds);
    listing.kinds.shrink_to_fit();
    if (_sawHiddenList) dropHiddenNames(listing);
  }

 private:
  /// nullopt for what is not shown: pipes, sockets, devices, and what is gone meanwhile.
  std::optional<EntryKind> kindOf(const dirent64& entry, std::string_view name) const {
    unsigned char type = entry.d_type;
    if (type == DT_UNKNOWN) type = typeByLooking(entry.d_name);
    if (type == DT_DIR) return EntryKind::folder;
    if (type == DT_LNK) return EntryKind::alias;
    if (type != DT_REG) return std::nullopt;
    const bool link = DesktopEntry::hasEntryName(name) && isDesktopLink(_descriptor, entry.d_name);
    return link ? EntryKind::alias : EntryKind::file;
  }

  unsigned char typeByLooking(const char* name) const {
    struct stat status {};
    if (::fstatat(_descriptor, name, &status, AT_SYMLINK_NOFOLLOW) != 0) return DT_UNKNOWN;
    return static_cast<unsigned char>(IFTODT(status.st_mode));
  }

  void dropHiddenNames(Listing& listing) const {
    const Result<std::string> text =
        readSmallFile(_descriptor, kHiddenListName, kMaxHiddenListBytes);
    if (!text) return;
    const std::unordered_set<std::string_view> hidden = linesOf(*text);
    NameListBuilder names;
    std::vector<EntryKind> kinds;
    std::size_t index = 0;
    for (const std::string_view name : *listing.names) {
      const EntryKind kind = listing.kinds[index++];
      if (!hidden.contains(name) && names.append(name)) kinds.push_back(kind);
    }
    listing.names = names.finish();
    listing.kinds = std::move(kinds);
  }

  static std::unordered_set<std::string_view> linesOf(std::string_view text) {
    std::unordered_set<std::string_view> lines;
    while (!text.empty()) {
      const std::size_t end = text.find('\n');
      lines.insert(text.substr(0, end));
      text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return lines;
  }

  const int _descriptor;
  NameListBuilder _names;
  std::vector<EntryKind> _kinds;
  bool _sawHiddenList = false;
};

}  // namespace

int readVisibleEntries(int descriptor, Listing& listing) {
  EntryCollector collector(descriptor);
  const auto take = [&collector](const dirent64& entry) { collector.take(entry); };
  Reading reading = Reading::more;
  while (reading == Reading::more) reading = readSomeEntries(descriptor, take);
  if (reading == Reading::failed) return errno;
  collector.finish(listing);
  return 0;
}

bool isDesktopLink(int folderDescriptor, const char* name) {
  const Result<std::string> text = readSmallFile(folderDescriptor, name, DesktopEntry::kMaxBytes);
  return text && DesktopEntry::parse(*text).isFileLink();
}

}  // namespace pelmora::platform
