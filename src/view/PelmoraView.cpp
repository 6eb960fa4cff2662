#include "view/PelmoraView.h"

#include "cache/FolderCache.h"
#include "cards/PMFile.h"
#include "nowplaying/PMiTunesTrack.h"
#include "platform/Clock.h"
#include "platform/Displays.h"
#include "platform/Files.h"
#include "platform/Log.h"
#include "platform/predicate/PredicateArchive.h"
#include "platform/predicate/PredicateEmptiness.h"
#include "platform/PreferencesStore.h"
#include "platform/Scheduler.h"
#include "platform/Sound.h"
#include "platform/UserFolders.h"
#include "platform/Workspace.h"
#include "shared/Random.h"
#include "view/DisplayListFile.h"
#include "view/ModuleDefaults.h"

#include <sys/stat.h>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace pelmora::view {

namespace {

/// What a lookup gives that finds nothing.
constexpr std::uint64_t kNotFound = std::numeric_limits<std::int64_t>::max();
constexpr std::uint64_t kLargestPlausibleScreenIndex = 10;
/// The label with the track is on the preview and the first screen alone.
constexpr std::uint64_t kScreensWithTrack = 2;
constexpr double kWidestPreview = 500.0;  // points

constexpr const char* kFirstFolderAdded = "FirstFolderAdded";
constexpr const char* kScreensaverDidStop = "com.apple.screensaver.didstop";

/// From this version on a host's word about previews is checked.
bool systemMistakesViewsForPreviews(const platform::SystemVersion& version) {
  return version.major >= 11 || version.minor >= 15;
}

/// Every view seeds anew, with the whole seconds cut to 32 bits.
void seedRandom(const platform::Clock& clock) {
  const auto seconds = static_cast<std::int64_t>(clock.now().seconds);
  srandom(static_cast<unsigned int>(static_cast<std::uint64_t>(seconds) & 0xFFFFFFFFU));
}

std::string describeScreens(const std::vector<platform::Display>& screens) {
  std::string text = "(";
  for (const platform::Display& screen : screens) {
    if (text.size() > 1) text += ", ";
    text += platform::describe(screen);
  }
  return text + ")";
}

std::string describeFolders(const std::vector<FilePath>& folders) {
  std::string text = "(";
  for (const FilePath& folder : folders) text += (text.size() > 1 ? ", " : "") + folder.bytes();
  return text + ")";
}

/// The stored number of cards; a value that makes no sense is said and the default taken.
std::uint64_t storedNumImages(const platform::Services& services) {
  const std::int64_t stored = services.preferences.integerForKey("NumImages");
  if (stored >= 0) return static_cast<std::uint64_t>(stored);
  services.log.print("Pelmora: The preference NumImages is %ld; using %d.", stored,
                     kDefaultNumImages);
  return kDefaultNumImages;
}

double storedDelay(const platform::Services& services) {
  const double stored = services.preferences.doubleForKey("Delay");
  if (std::isfinite(stored)) return stored;
  services.log.print("Pelmora: The preference Delay is no number; using %g.", kDefaultDelay);
  return kDefaultDelay;
}

/// The size that makes the longer side three quarters of the view's height.
Size scaledSize(const Size& natural, double viewHeight) {
  if (natural.width <= 0 || natural.height <= 0) return {};
  const double target = 0.75 * viewHeight;
  const double factor =
      natural.width > natural.height ? target / natural.width : target / natural.height;
  return {natural.width * factor, natural.height * factor};
}

}  // namespace

struct PelmoraView::Cycle {
  std::atomic<bool> isAnimating{false};
  std::atomic<double> lastImageChangeTime{0};
  std::atomic<std::uint64_t> screenIndex{0};
  std::atomic<platform::NotificationCenter::Token> token{};

  void firstFolderAdded(const platform::Notification& notification,
                        platform::NotificationCenter& center) {
    const auto screen = static_cast<std::uint64_t>(notification.object.integerValue());
    if (screen != 0 && screen != screenIndex) return;
    center.removeObserver(token.exchange({}));
    // The distant past already makes the next frame add a card; it is only kept so.
    double expected = ReferenceTime::distantPast().seconds;
    if (isAnimating) lastImageChangeTime.compare_exchange_strong(expected, expected);
  }
};

PelmoraView::PelmoraView(const platform::Services& services, const Rect& frame, bool isPreview)
    : _services(services),
      _origFrame(frame),
      _frame(frame),
      _isPreview(isPreview),
      _cycle(std::make_shared<Cycle>()) {
  platform::Log& log = _services.log;
  log.print("Pelmora: initWithFrame, isPreview = %d, frame = %s", isPreview,
            platform::describe(frame).c_str());
  for (const platform::Display& screen : _services.displays.screens()) {
    log.print("Pelmora: screen rect %s.", platform::describe(screen.frame).c_str());
  }
  if (_isPreview && systemMistakesViewsForPreviews(_services.systemVersion)) {
    _isPreview = frame.size.width < kWidestPreview;
  }
  log.print("Pelmora: isPreview now = %d", _isPreview);
  log.print("Pelmora: self.isPreview = %d", this->isPreview());

  seedRandom(_services.clock);
  _sourceList = sources::PMSourceList::sharedSourceList(_services);
  _services.preferences.registerDefaults(
      moduleDefaults(_services.userFolders, _services.bookmarks));

  _finderLabels = _services.workspace.fileLabels();
  _finderLabelColors = _services.workspace.fileLabelColors();
  if (_finderLabels.size() != _finderLabelColors.size()) {
    _finderLabels.clear();
    _finderLabelColors.clear();
  }

  _layer = std::make_shared<render::Layer>();
  _layer->setBounds({{0, 0}, frame.size});
  _layer->setNeedsDisplayOnBoundsChange(true);
  _layer->setDelegate(this);
  _layer->setNeedsDisplay();

  observeNotifications();
  log.print("Pelmora: init done for screen frame %s.", platform::describe(frame).c_str());
}

PelmoraView::~PelmoraView() {
  _services.notifications.removeObserver(_cycle->token);
  _services.distributedNotifications.removeObserver(_didStopToken);
  _layer->setDelegate(nullptr);
}

void PelmoraView::observeNotifications() {
  _cycle->token = _services.notifications.addObserver(
      kFirstFolderAdded,
      [cycle = _cycle, &center = _services.notifications](const platform::Notification& note) {
        cycle->firstFolderAdded(note, center);
      });
  _didStopToken = _services.distributedNotifications.addObserver(
      kScreensaverDidStop, [this](const platform::Notification&) { screensaverDidStop(); });
}

bool PelmoraView::isAnimating() const { return _cycle->isAnimating; }

std::uint64_t PelmoraView::screenIndex() const { return _cycle->screenIndex; }

bool PelmoraView::observesFirstFolder() const {
  return _cycle->token.load() != platform::NotificationCenter::Token{};
}

double PelmoraView::lastImageChangeTime() const { return _cycle->lastImageChangeTime; }

std::string PelmoraView::screenName() const {
  return _isPreview ? "Prefs" : std::to_string(screenIndex());
}

void PelmoraView::viewWillMoveToWindow(platform::Window* newWindow) {
  _newWindow = newWindow;
  if (newWindow) return;
  _services.log.print("Pelmora: View being removed from window for screen %s",
                      screenName().c_str());
  stopAnimationMeat();
}

void PelmoraView::viewDidMoveToWindow() {
  _window = _newWindow;
  platform::Log& log = _services.log;
  log.print("Pelmora: viewDidMoveToWindow, my frame = %s", platform::describe(_frame).c_str());
  if (!_window) {
    log.print("Pelmora: View was removed from window for screen %s", screenName().c_str());
    return;
  }
  if (_isPreview) {
    _cycle->screenIndex = 0;
    return;
  }
  _cycle->screenIndex = screenPosition().value_or(kNotFound) + 1;
  log.print("Pelmora: screenIndex is %lu.", screenIndex());
  if (screenIndex() > kLargestPlausibleScreenIndex) warnOfGoofyScreenIndex();
}

std::optional<std::uint64_t> PelmoraView::screenPosition() const {
  const std::vector<platform::Display> screens = _services.displays.screens();
  const std::optional<platform::Display> screen = _window->screen();
  if (!screen) {
    _services.log.print(
        "Pelmora: Failed to get screen for window %s. I'll look it up by frame instead.",
        _window->description().c_str());
    _services.sound.beep();
  }
  for (std::size_t i = 0; i < screens.size(); ++i) {
    if (!screen) {
      _services.log.print("Pelmora: my original frame = %s",
                          platform::describe(_origFrame).c_str());
    }
    if (screen ? screens[i].id == screen->id : screens[i].frame == _origFrame) return i;
  }
  return std::nullopt;
}

void PelmoraView::warnOfGoofyScreenIndex() const {
  const std::optional<platform::Display> screen = _window->screen();
  const std::string name = screen ? platform::describe(*screen) : "(null)";
  _services.log.print("Pelmora: screenIndex is %lu for screen %s! Gonna beep 4 times now.",
                      screenIndex(), name.c_str());
  for (int i = 0; i < 4; ++i) {
    _services.sound.beep();
    _services.scheduler.sleep(0.75);
  }
  _services.log.print("Pelmora: Goofy screen index! Screen is: %s\nScreens are: %s", name.c_str(),
                      describeScreens(_services.displays.screens()).c_str());
}

std::optional<Color> PelmoraView::colorOfLabel(std::string_view name) const {
  const auto found = std::find(_finderLabels.begin(), _finderLabels.end(), name);
  if (found == _finderLabels.end()) return std::nullopt;
  return _finderLabelColors[static_cast<std::size_t>(found - _finderLabels.begin())];
}

void PelmoraView::screensaverDidStop() {
  _services.log.write("Pelmora: screensaverDidStop");
  stopAnimation();
}

void PelmoraView::setFrame(const Rect& frame) {
  _frame = frame;
  _layer->setBounds({{0, 0}, frame.size});
}

void PelmoraView::startAnimation() {
  _cycle->isAnimating = true;
  _cycle->lastImageChangeTime = ReferenceTime::distantPast().seconds;
  _numImages = storedNumImages(_services);
  _delay = storedDelay(_services);
  _services.log.print("Pelmora: Starting animation for screen %s, PelmoraView %p",
                      screenName().c_str(), static_cast<void*>(this));
  cache::FolderCache::sharedCache(_services)->loadForAppName(kApplicationName);
  if (const auto list = _sourceList.lock()) {
    list->loadSourcesFromPrefs(_services.preferences, true, false);
  }
  useStoredFilter();
  prepareDisplayList();
}

void PelmoraView::useStoredFilter() {
  const auto list = _sourceList.lock();
  const auto stored = _services.preferences.objectForKey("FilterPredicate");
  const auto* archive = stored ? stored->get<plist::Bytes>() : nullptr;
  if (!list || !archive) return;
  const auto predicate = platform::predicate::readPredicateArchive(*archive);
  if (!predicate) {
    _services.log.print("Pelmora: The stored filter cannot be read: %s",
                        predicate.error().message.c_str());
  }
  try {
    list->setSpotlightQuery(predicate ? std::optional(*predicate) : std::nullopt);
  } catch (const platform::predicate::PredicateException& exception) {
    // The host is not to end for it: the show goes on without a filter.
    _services.log.print("Pelmora: The stored filter is not used: %s: %s", exception.name().c_str(),
                        exception.reason().c_str());
  }
}

void PelmoraView::prepareDisplayList() {
  platform::Log& log = _services.log;
  const std::vector<FilePath> caches = _services.userFolders.caches();
  log.print("Pelmora: Cache folder: %s", describeFolders(caches).c_str());
  if (caches.empty()) return;
  const FilePath folder = caches.front() / kApplicationName;
  // Another thread, of the index, makes it as well: that it has come meanwhile is as good.
  if (mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
    log.print("Pelmora: Error either attrs of folder or creating cache folder: %s",
              std::strerror(errno));
    return;
  }
  _logPath = folder / (_isPreview ? "System Prefs Log.txt"
                                  : "Screen " + std::to_string(screenIndex()) + " Log.txt");
  if (createDisplayListFile(_logPath)) {
    log.print("Pelmora: Created cache file: %s", _logPath.c_str());
  } else {
    log.print("Pelmora: Error creating log file for screen %lu.", screenIndex());
  }
}

void PelmoraView::stopAnimation() {
  _cycle->isAnimating = false;
  stopAnimationMeat();
}

void PelmoraView::stopAnimationMeat() {
  _services.log.print("Pelmora: Stopping animation for screen %s, PelmoraView %p",
                      screenName().c_str(), static_cast<void*>(this));
  const auto list = _sourceList.lock();
  if (list) list->cancelOperations();
  cache::FolderCache::sharedCache(_services)->saveForAppName(kApplicationName);
  if (list) list->unloadSources();
}

void PelmoraView::animateOneFrame() {
  const double now = _services.clock.now().seconds;
  // A clock that was set back would keep the next card away until it is as late again.
  if (now < _cycle->lastImageChangeTime) _cycle->lastImageChangeTime = now;
  if (now - _cycle->lastImageChangeTime > _delay) changeImages(now);
  if (_iTunesTrack && _iTunesTrack->iTunesType() == nowplaying::PMiTunesTrack::kFliesAround) {
    _iTunesTrack->flyAround();
  }
}

void PelmoraView::changeImages(double now) {
  _cycle->lastImageChangeTime = now;
  const bool isAdded = addNewImageToList();
  if (!isAdded && _images.empty()) {
    _cycle->lastImageChangeTime = ReferenceTime::distantPast().seconds;
  }
  _layer->setNeedsDisplay();
  if (isAdded) makeTrackLabel();
}

/// Once made, the label stays, also when the preference is switched off.
void PelmoraView::makeTrackLabel() {
  const platform::PreferencesStore& preferences = _services.preferences;
  const bool isWanted = preferences.isOn("ShowiTunesTrack");
  const std::int64_t type = preferences.integerForKey("iTunesTrackType");
  if (!isWanted || screenIndex() >= kScreensWithTrack || _iTunesTrack) return;
  _iTunesTrack = std::make_unique<nowplaying::PMiTunesTrack>(*this, type);
  _iTunesTrack->fillOutLayers();
}

bool PelmoraView::addNewImageToList() {
  const auto list = _sourceList.lock();
  if (!list) return false;
  std::optional<sources::ImagePick> pick = list->randomImageAndURLForScreenIndex(screenIndex());
  if (!pick) return false;
  pick->image.size = scaledSize(pick->image.size, _frame.size.height);
  if (!_images.empty() && _images.size() >= _numImages) _images.erase(_images.begin());
  _images.push_back(cards::PMFile::make(pick->url, pick->image, this));
  std::vector<FilePath> shown;
  for (const auto& card : _images) shown.push_back(card->url());
  if (!_logPath.empty()) writeDisplayListFile(_logPath, shown);
  return true;
}

bool PelmoraView::folder(const FilePath& folder, std::string_view containsItemNamed) const {
  return _services.files.facts(folder / containsItemNamed, platform::FinalLink::follow).has_value();
}

void PelmoraView::drawLayer(render::Layer* layer, render::LayerContext& context) {
  context.fillRect(layer ? layer->bounds() : Rect{}, Color{0, 0, 0, 1});
}

}  // namespace pelmora::view
