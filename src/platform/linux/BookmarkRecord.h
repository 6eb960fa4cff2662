#pragma once

#include "platform/linux/FilesystemIdentity.h"
#include "platform/PropertyList.h"
#include "shared/FilePath.h"
#include "shared/Result.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::platform {

/// What a bookmark tells about a folder: a binary property list, a dictionary of the keys named
/// below. Only the path must be there; everything else serves to find a folder that moved.
struct BookmarkRecord {
  static constexpr std::size_t kMaxBytes = 256 * 1024;
  static constexpr std::size_t kChildNames = 16;

  FilePath path;                              // "path"
  FilePath pathInFilesystem;                  // "filesystemPath"; empty if unknown
  FilesystemIdentity filesystem;              // "filesystemName", "filesystemID"
  std::optional<std::uint64_t> inode;         // "inode"; unknown where inodes do not last
  std::optional<std::int64_t> birthTime;      // "birthTime", nanoseconds since 1970
  std::vector<std::uint64_t> ancestorInodes;  // "ancestorInodes", the parent's first
  std::vector<std::string> childNames;        // "childNames", some of them

  bool operator==(const BookmarkRecord&) const = default;

  [[nodiscard]] plist::Bytes encoded() const;
  /// The bytes are untrusted; anything but such a dictionary is an error.
  [[nodiscard]] static Result<BookmarkRecord> decode(const plist::Bytes& bytes);
};

}  // namespace pelmora::platform
