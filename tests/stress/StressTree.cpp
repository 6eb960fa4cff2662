#include "StressTree.h"

#include "platform/fake/FakeBookmarks.h"
#include "sources/ScreenIndexAdditions.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace pelmora::stress {

namespace {

constexpr int kSources = 6;
constexpr int kFolders = 12;  // in a source; as many again may come
constexpr int kFiles = 7;     // in a folder, at most

int below(std::mt19937_64& random, int end) {
  return static_cast<int>(random() % static_cast<std::uint64_t>(end));
}

std::string folderName(std::mt19937_64& random) {
  return "folder " + std::to_string(below(random, 2 * kFolders));
}

std::string fileName(int number) { return "beach " + std::to_string(number) + ".jpg"; }

void touch(const FilePath& file) { std::ofstream(file.bytes()).flush(); }

void makeFolder(const FilePath& folder, std::mt19937_64& random) {
  std::error_code error;
  std::filesystem::create_directories(folder.bytes(), error);
  for (int i = below(random, kFiles); i >= 0; --i) touch(folder / fileName(i));
}

}  // namespace

StressTree::StressTree() {
  const std::vector<std::string> screens = {"", "1", "2,3", "", "10", "3"};
  const std::vector<std::int64_t> days = {127, 65, 62, 127, 42, 85};
  const std::vector<double> chances = {100, 50, 25, 0.001, 75, 100};
  std::mt19937_64 random(1);
  for (std::size_t i = 0; i < kSources; ++i) {
    const FilePath source = _temporary.mkdir("source " + std::to_string(i));
    _sources.push_back({source, chances[i], days[i], screens[i]});
    makeFolder(source, random);
    for (int folder = 0; folder < kFolders; ++folder) {
      makeFolder(source / ("folder " + std::to_string(folder)), random);
      if (folder % 3 == 0)
        makeFolder(source / ("folder " + std::to_string(folder)) / "inner", random);
    }
  }
}

plist::Array StressTree::sources() const {
  plist::Array stored;
  for (const Source& source : _sources) {
    stored.emplace_back(
        plist::Dictionary{{"bookmark", platform::FakeBookmarks::bookmarkOf(source.folder)},
                          {"enabled", true},
                          {"chance", source.chance},
                          {"days", source.days},
                          {"screens", source.screens}});
  }
  return stored;
}

FilePath StressTree::anyFolder(std::mt19937_64& random) const {
  const FilePath& source = _sources[random() % _sources.size()].folder;
  return below(random, 8) == 0 ? source : source / folderName(random);
}

FilePath StressTree::anyFile(std::mt19937_64& random) const {
  const FilePath folder = anyFolder(random);
  return folder / fileName(below(random, kFiles));
}

void StressTree::changeSomething(std::mt19937_64& random) {
  const FilePath& source = _sources[random() % _sources.size()].folder;
  const FilePath folder = source / folderName(random);
  std::error_code error;
  switch (below(random, 6)) {
    case 0:
      std::filesystem::rename(folder.bytes(), (source / folderName(random)).bytes(), error);
      break;
    case 1:
      std::filesystem::remove_all(folder.bytes(), error);
      break;
    case 2:
    case 3:
      makeFolder(folder, random);
      break;
    case 4:
      std::filesystem::remove(anyFile(random).bytes(), error);
      break;
    default:
      touch(anyFile(random));
      break;
  }
}

std::map<std::string, std::uint64_t> StressTree::filesOfFolders() const {
  std::map<std::string, std::uint64_t> counts;
  const std::filesystem::recursive_directory_iterator entries(_temporary.path().bytes());
  for (const auto& entry : entries) {
    if (entry.is_regular_file()) ++counts[entry.path().parent_path().string()];
  }
  return counts;
}

std::uint64_t StressTree::weight(std::uint64_t screen, int day) const {
  std::uint64_t sum = 0;
  for (const auto& [folder, files] : filesOfFolders()) {
    for (const Source& source : _sources) {
      const std::string& path = source.folder.bytes();
      const bool isBelow = folder == path || folder.starts_with(path + "/");
      const bool isOn = ((source.days >> day) & 1) != 0;
      if (!isBelow || !isOn || !sources::includesScreenIndex(source.screens, screen)) continue;
      sum += static_cast<std::uint64_t>(
          std::ceil(static_cast<double>(files) * (source.chance / 100.0)));
    }
  }
  return sum;
}

}  // namespace pelmora::stress
