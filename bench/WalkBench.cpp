#include "Benches.h"
#include "Report.h"
#include "Trees.h"

#include "cache/FolderCache.h"
#include "platform/fake/FakeServices.h"
#include "platform/linux/PosixFiles.h"
#include "platform/OperationQueue.h"
#include "sources/PMSourceList.h"

#include <thread>

namespace pelmora::bench {

namespace {

constexpr int kRounds = 5;

/// Formats its lines, as the real log does, and forgets them: the system log's own speed is no
/// figure of ours.
class ForgetfulLog : public platform::Log {
 public:
  void write(std::string_view) override {}
};

/// The services of a real walk, with one source.
class WalkServices {
 public:
  WalkServices(const FilePath& source, const FilePath& caches) {
    _fakes.userFolders.cachesFolders = {caches};
    _fakes.preferences.setObject(
        "Sources",
        plist::Array{plist::Dictionary{{"bookmark", platform::FakeBookmarks::bookmarkOf(source)},
                                       {"enabled", true},
                                       {"chance", 100},
                                       {"days", 127},
                                       {"screens", ""}}});
  }

  [[nodiscard]] const platform::Services& services() const { return _services; }
  platform::PreferencesStore& preferences() { return _fakes.preferences; }

 private:
  platform::FakeServices _fakes;
  platform::PosixFiles _files;
  ForgetfulLog _log;
  const platform::Services _services{
      .clock = _fakes.clock,
      .scheduler = _fakes.scheduler,
      .log = _log,
      .files = _files,
      .userFolders = _fakes.userFolders,
      .bookmarks = _fakes.bookmarks,
      .preferences = _fakes.preferences,
      .displays = _fakes.displays,
      .workspace = _fakes.workspace,
      .images = _fakes.images,
      .metadata = _fakes.metadata,
      .sound = _fakes.sound,
      .notifications = _fakes.notifications,
      .distributedNotifications = _fakes.distributedNotifications,
      .runningApplications = _fakes.runningApplications,
      .scripts = _fakes.scripts,
      .enumerationConcurrency = std::max(1U, std::thread::hardware_concurrency()),
  };
};

struct WalkTimes {
  double walk = 0;
  double cacheRead = 0;
  double cacheWrite = 0;
};

/// One run of a saver's walk: cache read, folders walked, cache written.
WalkTimes walkOnce(WalkServices& walk, std::size_t& folders) {
  WalkTimes times;
  cache::FolderCache::endSharedCache();
  const auto cache = cache::FolderCache::sharedCache(walk.services());
  times.cacheRead = secondsOf([&] { cache->loadForAppName("Pelmora"); });
  {
    sources::PMSourceList list(walk.services());
    times.walk = secondsOf([&] {
      list.loadSourcesFromPrefs(walk.preferences(), true, false);
      list.enumQueue().waitUntilAllOperationsAreFinished();
    });
    folders = list.dirItems().size();
  }
  times.cacheWrite = secondsOf([&] { cache->saveForAppName("Pelmora"); });
  cache::FolderCache::endSharedCache();
  return times;
}

void benchTree(const std::string& name, int folders, int filesInEach, double secondTarget) {
  const Workplace place;
  const FilePath tree = place.mkdir("tree");
  makeTree(tree, folders, filesInEach);
  std::vector<double> find, first, second, read, write;
  std::size_t found = 0;
  for (int round = 0; round <= kRounds; ++round) {
    const FilePath caches = place.mkdir("caches" + std::to_string(round));
    WalkServices walk(tree, caches);
    const double findTime = secondsOfCommand({"find", tree.bytes(), "-type", "f"});
    const WalkTimes cold = walkOnce(walk, found);
    const WalkTimes warm = walkOnce(walk, found);
    if (round == 0) continue;  // warms the file system's caches
    find.push_back(findTime);
    first.push_back(cold.walk);
    write.push_back(cold.cacheWrite);
    second.push_back(warm.walk + warm.cacheRead);
    read.push_back(warm.cacheRead);
  }
  const double findTime = median(find);
  const double hotWalk = median(first);
  if (found != static_cast<std::size_t>(folders))
    std::printf("# only %zu folders were found\n", found);
  report({.name = name + ".find", .value = findTime, .unit = "s"});
  report({.name = name + ".hot",
          .value = hotWalk,
          .unit = "s",
          .base = "find",
          .baseValue = findTime,
          .most = 0.8});
  report({.name = name + ".second-start",
          .value = median(second),
          .unit = "s",
          .base = "find",
          .baseValue = findTime,
          .most = secondTarget});
  if (filesInEach < 100) return;
  report({.name = name + ".cache-write",
          .value = median(write),
          .unit = "s",
          .base = "hot-walk",
          .baseValue = hotWalk,
          .most = 0.35});
  report({.name = name + ".cache-read",
          .value = median(read),
          .unit = "s",
          .base = "hot-walk",
          .baseValue = hotWalk,
          .most = 0.2});
}

}  // namespace

void benchWalkMillion() { benchTree("walk.1M-in-10k", 10'000, 100, 0.2); }

void benchWalkManyFolders() { benchTree("walk.100k-in-50k", 50'000, 2, 0.25); }

}  // namespace pelmora::bench
