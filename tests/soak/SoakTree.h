#pragma once

#include "shared/FilePath.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace pelmora::soak {

/// A folder with pictures, and what a fair choice has to know of it.
struct SoakFolder {
  std::size_t source = 0;
  FilePath path;
  std::uint64_t files = 0;
  std::uint64_t matching = 0;  // files that the filter admits
};

/// A source, as the user chose it.
struct SoakSource {
  std::string name;
  double chance = 100;  // percent
  std::uint64_t days = 127;
  std::string screens = {};
  std::size_t folders = 0;
};

/// The user's pictures: sources with folders of hard links to a few real pictures. Overnight one is
/// renamed, and now and then one is removed, or made again. Thread: main. Errors: it throws.
class SoakTree {
 public:
  /// Of about that many pictures, in `folder`.
  SoakTree(FilePath folder, std::size_t pictures);

  /// Which word is in the names of the files that the filter is to admit: every fourth.
  static constexpr const char* kMatching = "beach";

  [[nodiscard]] static const std::vector<SoakSource>& sources();
  [[nodiscard]] FilePath pathOf(const SoakSource& source) const;
  /// What has changed overnight; the first day is 0.
  void changeForDay(int day);

  /// The folders that there are now.
  [[nodiscard]] std::vector<SoakFolder> folders() const;
  /// The paths of those that there were once and are no more.
  [[nodiscard]] std::vector<FilePath> goneFolders() const;

  /// How much a folder weighs for a screen (0: the preview) on a day (0 = Sunday), by the rules
  /// that users read.
  [[nodiscard]] static std::uint64_t weight(const SoakFolder& folder, std::uint64_t screen, int day,
                                            bool isFiltered);

 private:
  void makeSource(const SoakSource& source) const;
  void makeFolder(const FilePath& folder) const;

  const FilePath _root;
  const bool _areRenamedFollowed;  // with a changed root, bookmarks do not know the filesystem
  const std::size_t _filesInFolder;
  std::vector<FilePath> _originals;
  std::string _travels;      // the name, now, of the source that is renamed
  bool _isVanished = false;  // the source that comes and goes
  std::set<std::string> _everThere;
};

}  // namespace pelmora::soak
