#pragma once

#include "cache/FolderCache.h"
#include "platform/PropertyList.h"
#include "shared/Result.h"

#include <span>

namespace pelmora::cache {

/// The form of the cache's file: a keyed archive of a dictionary from folder path to a dictionary
/// with "mdate", "names" and, where known, "folderNames". Any reader of keyed archives understands
/// it; here it is written and read without a value in between, since a cache holds a million names.
/// Names and paths that are not UTF-8 are data. The marks of use are not part of it. Thread: any.
class FolderCacheFile {
 public:
  using Entry = FolderCache::Entry;
  using Entries = FolderCache::Entries;

  /// Equal entries give equal bytes. An error: what `decode` would not read again.
  [[nodiscard]] static Result<plist::Bytes> encode(const Entries& entries);

  /// The bytes are untrusted. An error: what is damaged, of another class or shape, a path that
  /// comes twice, a name that no file can have, and more text than so small a file should unfold
  /// to.
  [[nodiscard]] static Result<Entries> decode(std::span<const std::uint8_t> bytes);
};

}  // namespace pelmora::cache
