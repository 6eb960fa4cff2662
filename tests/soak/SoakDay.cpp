#include "SoakDay.h"

#include "cache/FolderCache.h"
#include "cards/PMFile.h"
#include "host/ParseValues.h"
#include "nowplaying/PMiTunesTrack.h"
#include "platform/Bookmarks.h"
#include "platform/Calendar.h"
#include "platform/NotificationCenter.h"
#include "platform/predicate/PredicateArchive.h"
#include "platform/PreferencesStore.h"
#include "render/Snapshot.h"
#include "sources/PMSourceList.h"
#include "view/PelmoraView.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <map>
#include <stdexcept>
#include <thread>
#include <utility>

namespace pelmora::soak {

namespace {

constexpr double kHour = 3600;  // seconds
constexpr double kAfterMidnight = 10;
constexpr double kFrame = 0.5;

/// The clocks are put back in the first month, where the run's time zone is.
ReferenceTime startOf(int day, int hours) {
  ReferenceTime midnight = *host::parseLocalTime("2026-10-10T00:00:00");
  for (int i = 0; i < day; ++i) midnight = platform::beginOfNextDay(midnight);
  return {midnight.seconds - hours * kHour / 2};
}

platform::players::Track trackOf(int day) {
  return {.name = "Movement " + std::to_string(day + 1),
          .artist = "A long-winded ensemble of considerable size",
          .album = "The days of a month"};
}

using Pictures = std::map<qint64, qsizetype>;  // bytes of each, by its key

void addPictures(const render::LayerSnapshot& layer, Pictures& pictures) {
  const auto add = [&pictures](const QImage& picture) {
    pictures.emplace(picture.cacheKey(), picture.sizeInBytes());
  };
  add(layer.contents);
  if (layer.picture) add(layer.picture->image);
  for (const render::LayerSnapshot& each : layer.sublayers) addPictures(each, pictures);
}

}  // namespace

std::vector<platform::Display> SoakDay::ThreeDisplays::screens() const {
  return {{1, "Left", {{0, 0}, {640, 400}}, 1},
          {2, "Middle", {{640, 0}, {800, 450}}, 1},
          {3, "Right", {{1440, 0}, {320, 240}}, 2}};
}

SoakDay::SoakDay(const SoakTree& tree, PickTallies& tallies, int day, int hours)
    : _tree(tree),
      _tallies(tallies),
      _hours(hours),
      _isFiltered(day % 3 == 2),
      _clock(startOf(day, hours)),
      _scheduler(_clock),
      _linux({.clock = &_clock,
              .scheduler = &_scheduler,
              .displays = &_displays,
              .track = trackOf(day),
              .enumerationConcurrency = 1}) {
  setPreferences();
  _session = std::make_unique<host::SaverSession>(_linux.services());
  _scheduler.setEndOfTurn([this] {
    countPicks();
    _session->commit();
  });
}

SoakDay::~SoakDay() = default;

/// The sources are chosen on the first day alone: later on their folders are found as they are.
void SoakDay::setPreferences() {
  using namespace platform::predicate;
  platform::PreferencesStore& preferences = _linux.services().preferences;
  if (!preferences.storedValues().contains("Sources")) {
    plist::Array stored;
    for (const SoakSource& source : SoakTree::sources()) {
      const auto bookmark = _linux.services().bookmarks.make(_tree.pathOf(source));
      if (!bookmark) throw std::runtime_error(bookmark.error().message);
      stored.emplace_back(plist::Dictionary{{"bookmark", *bookmark},
                                            {"enabled", true},
                                            {"chance", source.chance},
                                            {"days", static_cast<std::int64_t>(source.days)},
                                            {"screens", source.screens}});
    }
    preferences.setObject("Sources", std::move(stored));
    // The first card comes at once, each other at the first frame that is later than the delay.
    const double seconds = _hours * kHour;
    preferences.setObject("Delay", std::ceil(seconds / kCards / kFrame) * kFrame - kFrame / 2);
    preferences.setObject("ShowiTunesTrack", true);
    preferences.setObject("iTunesTrackType", nowplaying::PMiTunesTrack::kFliesAround);
  }
  if (_isFiltered) {
    const Predicate filter =
        Comparison{KeyPath{"kMDItemFSName"}, Operator::contains, Constant(SoakTree::kMatching)};
    preferences.setObject("FilterPredicate", *writePredicateArchive(filter));
  } else {
    preferences.removeObject("FilterPredicate");
  }
  if (const Status kept = preferences.synchronize(); !kept) {
    throw std::runtime_error(kept.error().message);
  }
}

std::vector<host::ViewPlace> SoakDay::places() {
  std::vector<host::ViewPlace> places;
  const auto screens = _displays.screens();
  places.push_back({.frame = {{0, 0}, {240, 160}}, .display = screens.front(), .isPreview = true});
  for (const platform::Display& display : screens) {
    places.push_back({.frame = display.frame, .scale = display.scale, .display = display});
  }
  for (host::ViewPlace& place : places) {
    _presenters.push_back(
        std::make_unique<host::OffscreenPresenter>(_clock, place.frame.size, place.scale));
    place.presenter = _presenters.back().get();
  }
  return places;
}

/// Lets the walk and the filter find all that there is to find.
void SoakDay::settle() {
  const auto list = _session->view(0).sourceList();
  std::atomic<bool> isDone{false};
  std::jthread waiter([&] {
    list->enumQueue().waitUntilAllOperationsAreFinished();
    list->waitUntilGathered();
    isDone = true;
    _scheduler.wake();
  });
  _scheduler.runPostedUntil([&isDone] { return isDone.load(); });
}

void SoakDay::beginTallies() {
  const std::vector<SoakFolder> folders = _tree.folders();
  const int weekday = platform::weekday(_clock.now()) - 1;
  for (std::size_t view = 0; view < _tallies.size(); ++view) {
    _tallies[view].begin({folders, view, weekday, _isFiltered});
  }
}

void SoakDay::countPicks() {
  for (std::size_t view = 0; view < _session->viewCount(); ++view) {
    const auto& cards = _session->view(view).images();
    if (cards.empty() || _lastCards[view].lock() == cards.back()) continue;
    _lastCards[view] = cards.back();
    _tallies[view].count(cards.back()->url());
  }
}

/// With news of the track, and something painted, now and then.
void SoakDay::runUntil(double mediaTime) {
  while (_clock.mediaTime() < mediaTime) {
    _linux.services().distributedNotifications.post(
        {"com.apple.iTunes.playerInfo", {}, plist::Dictionary{}});
    _scheduler.advanceTo(std::min(mediaTime, _clock.mediaTime() + kHour));
    for (const auto& presenter : _presenters) {
      static_cast<void>(presenter->paint(_clock.mediaTime()));
    }
  }
}

std::vector<std::string> SoakDay::run() {
  std::vector<std::string> problems;
  _lastCards.resize(_tallies.size());
  const auto places = this->places();
  _session->start(places);
  settle();
  beginTallies();
  _session->startFrames();
  _session->commit();
  runUntil(_hours * kHour / 2 + kAfterMidnight);
  beginTallies();
  runUntil(_hours * kHour - kFrame);
  checkFolders(problems);
  checkPicture(problems);
  _use = ProcessUse::now();
  // Which cards are there, large or small ones, is chance.
  _use.heapKilobytes -= pictureKilobytes();
  for (PickTally& tally : _tallies) tally.finish();
  _session->stop();
  checkCache(problems);
  return problems;
}

/// A folder is given up when its files keep failing, here too if the machine is so busy that a
/// picture takes longer than its decoder is given.
void SoakDay::checkFolders(std::vector<std::string>& problems) const {
  const std::size_t expected = _tree.folders().size();
  const std::size_t found = _session->view(0).sourceList()->dirItems().size();
  if (found == expected) return;
  problems.push_back("of " + std::to_string(expected) + " folders " + std::to_string(found) +
                     " were shown until the end");
}

void SoakDay::checkPicture(std::vector<std::string>& problems) {
  for (std::size_t view = 0; view < _session->viewCount(); ++view) {
    if (_session->view(view).images().size() != 5) {
      problems.push_back("view " + std::to_string(view) + " does not show five cards");
    }
    const QImage& picture = _presenters[view]->paint(_clock.mediaTime());
    const QImage small = picture.scaled(16, 16);
    bool isBlack = true;
    for (int i = 0; i < 16 * 16; ++i) {
      isBlack = isBlack && qGray(small.pixel(i % 16, i / 16)) < 8;
    }
    if (isBlack) problems.push_back("view " + std::to_string(view) + " is black");
  }
}

long SoakDay::pictureKilobytes() const {
  Pictures pictures;
  for (const auto& presenter : _presenters) addPictures(presenter->snapshot()->root, pictures);
  qsizetype bytes = 0;
  for (const auto& [key, size] : pictures) bytes += size;
  return static_cast<long>(bytes / 1024);
}

/// The file, read anew, has every folder with all its files, and none that is gone.
void SoakDay::checkCache(std::vector<std::string>& problems) const {
  cache::FolderCache cache(_linux.services());
  if (!cache.loadForAppName(view::kApplicationName)) {
    problems.push_back("the cache cannot be read");
    return;
  }
  for (const SoakFolder& folder : _tree.folders()) {
    const SharedNames names = cache.fileNamesOfFolder(folder.path);
    if (!names || names->size() != folder.files) {
      problems.push_back("the cache lost " + folder.path.bytes());
    }
  }
  for (const FilePath& folder : _tree.goneFolders()) {
    if (cache.cachedFolder(folder)) problems.push_back("the cache kept " + folder.bytes());
  }
}

}  // namespace pelmora::soak
