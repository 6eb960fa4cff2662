#include "Benches.h"
#include "OwnProcess.h"
#include "Report.h"
#include "Trees.h"

#include "cache/FolderCache.h"
#include "platform/fake/FakeServices.h"

#include <sys/stat.h>
#include <unistd.h>

namespace pelmora::bench {

namespace {

/// A cache of a million names, in a child process, so that nothing else counts: writes it, or reads
/// it, and gives the peak beyond where it began.
double peakOf(const FilePath& caches, bool writes, bool different) {
  return inChild([&] {
    platform::FakeServices fakes;
    fakes.userFolders.cachesFolders = {caches};
    const platform::Services services = fakes.services();
    cache::FolderCache cache(services);
    if (writes) {
      for (int folder = 0; folder < 10'000; ++folder) {
        std::vector<std::string> names;
        for (int n = 0; n < 100; ++n) names.push_back(cameraName(different ? folder * 100 + n : n));
        cache.addFolder(FilePath("/pictures/" + std::to_string(folder)), makeNameList(names),
                        nullptr, ReferenceTime{1.0 * folder});
      }
    }
    forgetPeak();
    const double before = peakMegabytes();
    if (writes) cache.saveForAppName("Pelmora");
    if (!writes && !cache.loadForAppName("Pelmora")) _exit(1);
    return peakMegabytes() - before;
  });
}

/// The memory of a cache whose names are the same in every folder, or all different.
void benchCacheOf(const std::string& kind, bool different) {
  const Workplace place;
  const FilePath caches = place.mkdir("caches");
  const double write = peakOf(caches, true, different);
  struct stat file {};
  stat((caches / "Pelmora" / "FolderCache.plist").c_str(), &file);
  const double size = static_cast<double>(file.st_size) / 1e6;
  const double read = peakOf(caches, false, different);
  report({.name = "cache." + kind + ".file", .value = size, .unit = "MB"});
  report({.name = "cache." + kind + ".peak-writing",
          .value = write,
          .unit = "MB",
          .base = "file-size",
          .baseValue = size,
          .most = 3});
  report({.name = "cache." + kind + ".peak-reading",
          .value = read,
          .unit = "MB",
          .base = "file-size",
          .baseValue = size,
          .most = 3});
}

}  // namespace

void benchCacheMemory() {
  benchCacheOf("different-names", true);
  benchCacheOf("equal-names", false);
}

}  // namespace pelmora::bench
