#include "Benches.h"
#include "OwnProcess.h"
#include "PhotoIndex.h"
#include "Report.h"
#include "TaggedPhotos.h"
#include "Trees.h"

#include "platform/linux/index/MetadataStore.h"
#include "platform/predicate/PredicateEvaluation.h"
#include "platform/ThreadPriority.h"

#include <exiv2/exiv2.hpp>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace pelmora::bench {

namespace {

constexpr int kFolders = 1000;
constexpr int kFilesInEach = 100;
constexpr int kFirstRounds = 3;
constexpr int kRestartRounds = 5;
constexpr int kQueryRounds = 7;

constexpr double kFirstMost = 2.0;    // of Exiv2
constexpr double kRestartMost = 2.0;  // seconds
constexpr double kQueryMost = 100;    // milliseconds
constexpr double kMostMegabytes = 150;

constexpr const char* kFilter = "kMDItemKeywords == 'beach'";

struct Query {
  const char* name;
  const char* filter;
};
constexpr Query kQueries[] = {
    {"name", "kMDItemFSName CONTAINS[cd] 'PLAGE'"},
    {"keyword", "kMDItemKeywords == 'beach'"},
    {"tag", "ANY kMDItemUserTags IN {'Red', 'Holiday'}"},
    {"camera", "kMDItemAcquisitionModel ==[c] 'nikon d750'"},
    {"city", "kMDItemCity LIKE[cd] 'san*'"},
    {"regex", "kMDItemFSName MATCHES 'IMG_00\\\\d[05]\\\\.JPG'"},
    {"compound",
     "(kMDItemKeywords == 'beach' OR kMDItemCity == 'Lisboa') AND NOT kMDItemStarRating < 3"},
    {"date",
     "kMDItemContentCreationDate BETWEEN {CAST(252460800, 'NSDate'), CAST(315532800, 'NSDate')}"},
    {"width", "kMDItemPixelWidth >= 360"},
    {"latitude", "kMDItemLatitude >= 40 AND kMDItemLatitude < 45"},
};

/// What a process did that had the index for itself.
struct IndexRun {
  double wall = 0;       // seconds
  double processor = 0;  // seconds, the inspector's with it
  double megabytesBefore = 0;
  double megabytes = 0;  // the most of its own, without the inspector
};

/// In a child process, of which the peak of its memory is told.
IndexRun runIndex(const TaggedPhotos& photos, const FilePath& index) {
  return inChild([&] {
    forgetPeak();
    IndexRun run{.megabytesBefore = peakMegabytes()};
    {
      PhotoIndex photoIndex(index);
      run.wall = photoIndex.gather(kFilter, photos.folders).seconds;
    }
    run.processor = processorSecondsOfAll();
    run.megabytes = peakMegabytes();
    return run;
  });
}

/// What a plain loop over the files takes, which does nothing with what it reads. It yields to
/// everything else as the index does, so that what else runs here slows both alike.
IndexRun runExiv2(const std::vector<FilePath>& files) {
  return inChild([&] {
    platform::yieldToEverythingElse();
    IndexRun run;
    run.wall = secondsOf([&] {
      Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
      Exiv2::enableBMFF(true);
      Exiv2::XmpParser::initialize();
      for (const FilePath& file : files) Exiv2::ImageFactory::open(file.bytes())->readMetadata();
    });
    run.processor = processorSecondsOfAll();
    return run;
  });
}

double medianOf(const std::vector<IndexRun>& runs, double IndexRun::*field) {
  std::vector<double> values;
  for (const IndexRun& run : runs) values.push_back(run.*field);
  return median(std::move(values));
}

/// Indexes and Exiv2 take turns, each index a fresh one; the last of them stays.
FilePath benchFirstIndex(const Workplace& place, const TaggedPhotos& photos) {
  const std::vector<FilePath> files = photos.files();
  std::vector<IndexRun> ours;
  std::vector<IndexRun> exiv2;
  FilePath index;
  for (int round = 0; round < kFirstRounds; ++round) {
    exiv2.push_back(runExiv2(files));
    index = place.mkdir("index" + std::to_string(round)) / platform::MetadataIndex::kFileName;
    ours.push_back(runIndex(photos, index));
  }
  report({.name = "index.first.wall",
          .value = medianOf(ours, &IndexRun::wall),
          .unit = "s",
          .base = "exiv2",
          .baseValue = medianOf(exiv2, &IndexRun::wall),
          .most = kFirstMost});
  report({.name = "index.first.cpu",
          .value = medianOf(ours, &IndexRun::processor),
          .unit = "s-cpu",
          .base = "exiv2",
          .baseValue = medianOf(exiv2, &IndexRun::processor)});
  report({.name = "index.memory",
          .value = medianOf(ours, &IndexRun::megabytes),
          .unit = "MB",
          .most = kMostMegabytes});
  report({.name = "index.memory.without",
          .value = medianOf(ours, &IndexRun::megabytesBefore),
          .unit = "MB"});
  return index;
}

void benchRestart(const TaggedPhotos& photos, const FilePath& index) {
  std::vector<IndexRun> runs;
  for (int i = 0; i < kRestartRounds; ++i) runs.push_back(runIndex(photos, index));
  report({.name = "index.restart.wall",
          .value = medianOf(runs, &IndexRun::wall),
          .unit = "s",
          .most = kRestartMost});
  report({.name = "index.restart.cpu",
          .value = medianOf(runs, &IndexRun::processor),
          .unit = "s-cpu"});
}

std::vector<platform::metadata::FileMetadata> everythingKnown(const TaggedPhotos& photos,
                                                              const FilePath& index) {
  platform::MetadataStore store(index, {});
  std::vector<platform::metadata::FileMetadata> all;
  for (const FilePath& file : photos.files()) {
    auto known = store.metadataOf(store.folderId(file.parent()), std::string(file.lastComponent()));
    if (known) all.push_back(*std::move(known));
  }
  return all;
}

std::size_t evaluate(const platform::predicate::Predicate& filter,
                     const std::vector<platform::metadata::FileMetadata>& files) {
  std::size_t count = 0;
  for (const auto& file : files) count += platform::predicate::matches(filter, file) ? 1 : 0;
  return count;
}

/// Another filter over folders that are up to date already, as when it is changed; beside it, the
/// evaluation for one file after the other of what is known of all, in memory.
void benchQueries(const TaggedPhotos& photos, const FilePath& index) {
  const auto files = everythingKnown(photos, index);
  PhotoIndex photoIndex(index);
  const auto watching = photoIndex.gather("FALSEPREDICATE", photos.folders);
  for (const Query& query : kQueries) {
    std::vector<double> ours;
    std::vector<double> evaluation;
    for (int round = 0; round < kQueryRounds; ++round) {
      const auto gathered = photoIndex.gather(query.filter, photos.folders);
      ours.push_back(gathered.seconds * 1e3);
      std::size_t count = 0;
      evaluation.push_back(secondsOf([&] { count = evaluate(filterOf(query.filter), files); }) *
                           1e3);
      if (count == gathered.files && count > 0) continue;
      std::fprintf(stderr, "%s: %zu files instead of %zu\n", query.filter, gathered.files, count);
      std::exit(1);
    }
    const std::string name = std::string("index.query.") + query.name;
    report({.name = name, .value = median(ours), .unit = "ms", .most = kQueryMost});
    report({.name = name + ".ratio",
            .value = median(ours),
            .unit = "ms",
            .base = "evaluation",
            .baseValue = median(evaluation)});
  }
}

}  // namespace

void benchIndex() {
  const Workplace place;
  std::puts("# making photographs to index");
  std::fflush(stdout);
  const TaggedPhotos photos = makeTaggedPhotos(place.path(), kFolders, kFilesInEach);
  if (!photos.hasTags) std::puts("# left out: tags of the file system, which takes none");
  const FilePath index = benchFirstIndex(place, photos);
  benchRestart(photos, index);
  benchQueries(photos, index);
}

}  // namespace pelmora::bench
