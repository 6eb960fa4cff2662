#pragma once

#include "sources/SourceEntry.h"

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace pelmora::sources {

/// What the sources say about the files of a folder.
struct FolderValues {
  double priority = 1.0;
  std::string screens;
  std::uint64_t days = 0;
};

/// The loaded sources, in the user's order. There are a handful, so lookups are linear.
/// Thread: immutable once built, so shared freely.
class SourceEntries {
 public:
  SourceEntries() = default;
  explicit SourceEntries(std::vector<SourceEntry> entries) : _entries(std::move(entries)) {}

  [[nodiscard]] const std::vector<SourceEntry>& entries() const { return _entries; }

  /// Whether the first source that is this very folder is on; true when none is.
  [[nodiscard]] bool isEnabled(const platform::FileIdentity& folder) const;

  /// The values of the source whose path is the longest that `folder` begins with, the first of
  /// equals. Letters are compared, not folders: /a/Pic also decides for /a/Pictures. Without one
  /// the folder has no day, so it is never shown.
  [[nodiscard]] FolderValues valuesForFolder(std::string_view folder) const;

 private:
  std::vector<SourceEntry> _entries;
};

using SharedSourceEntries = std::shared_ptr<const SourceEntries>;

}  // namespace pelmora::sources
