#include "platform/Displays.h"
#include "platform/Log.h"
#include "sources/LockGuards.h"
#include "sources/PMSourceList.h"
#include "sources/RandomIndex.h"
#include "sources/ScreenIndexAdditions.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelmora::sources {

namespace {

constexpr double kShareOfScreenHeight = 0.75;  // the longer side of a picture on its card
constexpr double kHeightWithoutDisplays = 1080;
constexpr std::uint64_t kMaxTries = 10;  // in one folder

/// The most device pixels that a picture's longer side fills on any display.
int longestSideOn(const std::vector<platform::Display>& displays) {
  double height = displays.empty() ? kHeightWithoutDisplays : 0;
  for (const platform::Display& display : displays) {
    height = std::max(height, display.frame.size.height * display.scale);
  }
  return std::max(1, static_cast<int>(std::ceil(kShareOfScreenHeight * height)));
}

}  // namespace

/// One visit to a drawn folder: a few of its files, until one can be shown.
struct PMSourceList::Draw {
  int longestSide = 0;
  std::uint64_t numFiles = 0;
  std::optional<platform::Image> image;
  FilePath url;
  std::optional<Error> obstacle;  // that is no fault of the files'
};

Eligibility PMSourceList::eligibilityForScreen(std::uint64_t screenIndex) const {
  return {screenIndex, _currentDay, _isFiltered};
}

std::uint64_t PMSourceList::weightForScreen(std::uint64_t screenIndex) const {
  const ReadGuard guard(weightsSumLock, _services.log);
  return _weightsSums[screenIndex];
}

void PMSourceList::computeWeight(std::uint64_t screenIndex) {
  const ReadGuard items(dirItemsLock, _services.log,
                        "Pelmora: Trying to get a rdlock on dirItemsLock failed: ");
  const WriteGuard sums(weightsSumLock, _services.log,
                        "Pelmora: Trying to get a rdlock on weightsSumLock failed: ");
  // Not cleared first: when two find it 0 at once it is doubled for a while, and some draws miss.
  _weightsSums[screenIndex] += _dirItems.sumOfWeights(eligibilityForScreen(screenIndex));
}

/// There may be more displays than there were when the list was made.
bool PMSourceList::knowsScreen(std::uint64_t screenIndex) {
  if (screenIndex < _numScreens) return true;
  const std::size_t numDisplays = _services.displays.screens().size();
  if (screenIndex > numDisplays) return false;
  const WriteGuard guard(weightsSumLock);
  if (screenIndex >= _weightsSums.size()) _weightsSums.resize(numDisplays + 1);
  _numScreens = _weightsSums.size();
  return true;
}

std::shared_ptr<PMFolder> PMSourceList::randomFolderForScreen(std::uint64_t screenIndex) {
  std::uint64_t number = 0;
  DrawnRecord drawn;
  if (knowsScreen(screenIndex)) {
    if (weightForScreen(screenIndex) == 0) computeWeight(screenIndex);
    number = randomIndexBetween(0, weightForScreen(screenIndex) - 1);
    const ReadGuard guard(dirItemsLock, _services.log);
    drawn = _dirItems.drawnRecord(number, eligibilityForScreen(screenIndex));
  }
  if (!drawn.record) {
    _services.log.print(
        "Pelmora: With random number %llu, item %llu doesn't correspond to a folder",
        static_cast<unsigned long long>(number), static_cast<unsigned long long>(drawn.runningSum));
  }
  return drawn.record;
}

std::optional<ImagePick> PMSourceList::randomImageAndURLForScreenIndex(std::uint64_t screenIndex) {
  const int longestSide = longestSideOn(_services.displays.screens());
  for (;;) {
    const std::shared_ptr<PMFolder> folder = randomFolderForScreen(screenIndex);
    if (!folder || folder->url.empty()) return std::nullopt;
    Draw draw;
    draw.longestSide = longestSide;
    drawImage(*folder, draw);
    if (draw.obstacle) {
      // The folder is to be there when pictures can be loaded again.
      tellOfObstacle(*draw.obstacle);
      return std::nullopt;
    }
    _isToldOfObstacle = false;
    if (draw.image) return ImagePick{*std::move(draw.image), std::move(draw.url)};
    _services.log.print("Pelmora: Giving up on folder '%s' because too many files are failing.",
                        folder->url.c_str());
    giveUp(*folder, draw.numFiles);
  }
}

std::optional<FilePath> PMSourceList::randomURLForScreenIndex(std::uint64_t screenIndex) {
  auto pick = randomImageAndURLForScreenIndex(screenIndex);
  if (!pick) return std::nullopt;
  return std::move(pick->url);
}

std::uint64_t PMSourceList::numFilesIn(const PMFolder& folder, bool isFiltered) const {
  if (!isFiltered) return folder.filenames->size();
  const ReadGuard guard(dirItemsLock, _services.log);
  return folder.spotlightFilenames.size();
}

FilePath PMSourceList::fileIn(const PMFolder& folder, bool isFiltered, std::uint64_t index) const {
  if (!isFiltered) return folder.url / (*folder.filenames)[index];
  const ReadGuard guard(dirItemsLock, _services.log);
  return folder.url / folder.spotlightFilenames[index];
}

void PMSourceList::drawImage(const PMFolder& folder, Draw& draw) const {
  const bool isFiltered = _isFiltered;
  draw.numFiles = numFilesIn(folder, isFiltered);
  const std::uint64_t maxTries = std::min(kMaxTries, draw.numFiles);
  std::uint64_t tries = 0;
  do {
    const std::uint64_t index = randomIndexBetween(0, draw.numFiles - 1);
    if (index < draw.numFiles) {
      draw.url = fileIn(folder, isFiltered, index);
      auto image = _services.images.load(draw.url, draw.longestSide);
      if (!image && !_services.images.isAtWork()) {
        draw.obstacle = image.error();
        return;
      }
      if (!image) {
        _services.log.print("Pelmora: Cannot show '%s': %s", draw.url.c_str(),
                            image.error().message.c_str());
      }
      draw.image = image ? std::optional(*std::move(image)) : std::nullopt;
    } else {
      _services.log.print("Pelmora: Random index %llu is out of range for max %llu.",
                          static_cast<unsigned long long>(index),
                          static_cast<unsigned long long>(draw.numFiles));
    }
    ++tries;
  } while (!(draw.image && draw.image->isValid()) && tries < maxTries);
}

/// Once, however often it is tried.
void PMSourceList::tellOfObstacle(const Error& obstacle) {
  if (_isToldOfObstacle.exchange(true)) return;
  _services.log.print("Pelmora: No picture can be loaded for now: %s", obstacle.message.c_str());
}

void PMSourceList::giveUp(const PMFolder& folder, std::uint64_t numFiles) {
  subtractFromWeights(numFiles);
  const WriteGuard guard(dirItemsLock);
  _dirItems.remove(folder);
}

void PMSourceList::subtractFromWeights(std::uint64_t numFiles) {
  const ReadGuard items(dirItemsLock, _services.log);
  const WriteGuard sums(weightsSumLock);
  for (std::uint64_t screen = 0; screen < _weightsSums.size(); ++screen) {
    std::uint64_t& sum = _weightsSums[screen];
    // A rough correction that was never refined: once for each record, not for the folder alone,
    // and it may wrap below zero. The draws that then miss find the weights right after the next
    // reset.
    const std::uint64_t count = _dirItems.countForScreen(screen);
    for (std::uint64_t i = 0; i < count && sum > 0; ++i) sum -= numFiles;
  }
}

}  // namespace pelmora::sources
