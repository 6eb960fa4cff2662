#pragma once

#include "platform/fake/TemporaryFolder.h"
#include "platform/PropertyList.h"
#include "shared/FilePath.h"

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace pelmora::stress {

/// The folders of a run: a few sources with folders below them, whose files are empty. Thread: as
/// each function says; the files themselves are anybody's. Errors: what cannot be changed because
/// somebody else was quicker stays as it is.
class StressTree {
 public:
  struct Source {
    FilePath folder;
    double chance = 100;  // percent
    std::int64_t days = 127;
    std::string screens = {};
  };

  StressTree();

  /// As they are stored. Any thread.
  [[nodiscard]] plist::Array sources() const;
  /// Renames, removes or makes a folder, or adds or removes a file. One thread.
  void changeSomething(std::mt19937_64& random);

  /// Any file, there or not, below a source. Any thread.
  [[nodiscard]] FilePath anyFile(std::mt19937_64& random) const;
  [[nodiscard]] FilePath anyFolder(std::mt19937_64& random) const;

  /// The number of files in each folder that has any. While nothing changes.
  [[nodiscard]] std::map<std::string, std::uint64_t> filesOfFolders() const;
  /// What the folders weigh together for a screen on a day (0 = Sunday). While nothing changes.
  [[nodiscard]] std::uint64_t weight(std::uint64_t screen, int day) const;

 private:
  platform::TemporaryFolder _temporary;
  std::vector<Source> _sources;
};

}  // namespace pelmora::stress
