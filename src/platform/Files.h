#pragma once

#include "shared/FilePath.h"
#include "shared/NameList.h"
#include "shared/ReferenceTime.h"
#include "shared/Result.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace pelmora::platform {

/// What makes two paths the same file: the device and the inode.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  bool operator==(const FileIdentity&) const = default;
};

struct FileIdentityHash {
  std::size_t operator()(const FileIdentity& identity) const noexcept {
    return std::hash<std::uint64_t>{}(identity.inode * 0x9E3779B97F4A7C15ULL ^ identity.device);
  }
};

/// A folder, an alias (a symbolic link, or a desktop entry that links to a file: URL), or anything
/// else.
enum class EntryKind : std::uint8_t { file, folder, alias };

/// What one look at a path tells.
struct FileFacts {
  EntryKind kind = EntryKind::file;
  FileIdentity identity;
  ReferenceTime contentModificationDate;
  /// A folder that certainly holds folders. Some file systems don't count them: then it is false.
  bool hasSubfolders = false;
};

/// The visible entries directly in a folder, in the file system's order.
struct Listing {
  FileFacts folder;  // as it was before the listing, so a change during it shows as a newer date
  SharedNames names;
  std::vector<EntryKind> kinds;  // of names, same order
};

/// Whether a folder's own path may end in a symbolic link. Source folders are followed (a home
/// folder's Pictures is often a link); folders found in a walk are not.
enum class FinalLink : std::uint8_t { follow, refuse };

/// The file system, as far as the walk needs it. Every answer may be out of date at once: other
/// programs change files. Thread: any.
class Files {
 public:
  virtual ~Files() = default;

  /// One shallow listing: hidden entries (leading dot, or named in the folder's `.hidden`) left
  /// out.
  [[nodiscard]] virtual Result<std::shared_ptr<const Listing>> list(const FilePath& folder,
                                                                    FinalLink link) const = 0;
  /// Facts about a path, or about what it leads to; nullopt when they cannot be read.
  [[nodiscard]] virtual std::optional<FileFacts> facts(const FilePath& path,
                                                       FinalLink link) const = 0;
  /// Where an alias leads: an existing path, or nullopt. For anything else a copy of `path`.
  [[nodiscard]] virtual std::optional<FilePath> resolveAlias(const FilePath& path) const = 0;
  /// Whether a folder is one document to the user, so never walked: by its suffix, or by a
  /// `Contents/Info.plist` in it; nullopt when it cannot be told.
  [[nodiscard]] virtual std::optional<bool> isPackage(const FilePath& folder) const = 0;
  /// The part of `isPackage` that needs no look at the disk.
  [[nodiscard]] virtual bool hasPackageSuffix(std::string_view name) const = 0;
  /// Whether a look at what the path leads to has been given up, and still has not ended: nobody
  /// knows what is there. Never waits.
  [[nodiscard]] virtual bool isStalled(const FilePath& /*path*/) const { return false; }
};

/// True for a folder, and for an alias whose target is one; false in every other case, read
/// failures included.
[[nodiscard]] bool isDirectory(const Files& files, const FilePath& path);

}  // namespace pelmora::platform
