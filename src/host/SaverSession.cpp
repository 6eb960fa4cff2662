#include "host/SaverSession.h"

#include "cache/FolderCache.h"
#include "nowplaying/PMiTunesTrack.h"
#include "platform/Clock.h"
#include "platform/Log.h"
#include "render/LayerTree.h"
#include "shared/Random.h"
#include "sources/PMSourceList.h"
#include "view/PelmoraView.h"

#include <algorithm>
#include <utility>

namespace pelmora::host {

namespace {

/// A window as far as its view asks: which display it is on.
class PlaceWindow : public platform::Window {
 public:
  explicit PlaceWindow(std::optional<platform::Display> display) : _display(std::move(display)) {}
  [[nodiscard]] std::optional<platform::Display> screen() const override { return _display; }
  [[nodiscard]] std::string description() const override {
    return _display ? "on " + platform::describe(*_display) : "on no display";
  }

 private:
  std::optional<platform::Display> _display;
};

/// Whether a frame makes a difference to the view: it is time for a picture, or its label flies.
bool wouldChange(const view::PelmoraView& view, double now) {
  const nowplaying::PMiTunesTrack* track = view.iTunesTrack();
  return now - view.lastImageChangeTime() > view.delay() ||
         (track != nullptr && track->iTunesType() == nowplaying::PMiTunesTrack::kFliesAround);
}

}  // namespace

struct SaverSession::ViewRun {
  ViewRun(const platform::Services& services, const ViewPlace& place)
      : window(place.display),
        view(std::make_unique<view::PelmoraView>(services, place.frame, place.isPreview)),
        layers(services.clock, services.scheduler, view->sharedLayer()) {
    show(place);
    // The view has seeded them.
    for (unsigned i = 0; i < place.skippedDraws; ++i) static_cast<void>(randomDoubleBetween(0, 1));
  }

  void show(const ViewPlace& place) {
    layers.setPresenter(place.presenter);
    setScale(place.scale);
  }

  void setScale(double scale) {
    view->setBackingScaleFactor(scale);
    layers.setScale(scale);
  }

  PlaceWindow window;
  std::unique_ptr<view::PelmoraView> view;
  render::LayerTree layers;
};

SaverSession::SaverSession(const platform::Services& services, DisplayPower* power)
    : _services(services), _power(power) {}

SaverSession::~SaverSession() {
  stop();
  sources::PMSourceList::endSharedSourceList();
  cache::FolderCache::endSharedCache();
}

void SaverSession::start(const std::vector<ViewPlace>& places) {
  for (const ViewPlace& place : places) addView(place);
}

std::size_t SaverSession::addView(const ViewPlace& place) {
  std::unique_ptr<ViewRun> run = takeAsleep(place);
  if (!run) run = makeRun(place);
  view::PelmoraView& view = *run->view;
  _runs.emplace(_nextNumber, std::move(run));
  if (_hasFrames) {
    startFrameTimer();
    if (view.isAnimating()) view.animateOneFrame();
  }
  return _nextNumber++;
}

std::unique_ptr<SaverSession::ViewRun> SaverSession::makeRun(const ViewPlace& place) const {
  auto run = std::make_unique<ViewRun>(_services, place);
  run->view->viewWillMoveToWindow(&run->window);
  // In its window a view's frame is the window's content, whose origin is zero.
  run->view->setFrame({{0, 0}, place.frame.size});
  run->view->viewDidMoveToWindow();
  run->view->startAnimation();
  return run;
}

std::unique_ptr<SaverSession::ViewRun> SaverSession::takeAsleep(const ViewPlace& place) {
  if (!place.display) return nullptr;
  const auto found = std::find_if(_asleep.begin(), _asleep.end(), [&place](const auto& run) {
    return run->window.screen()->id == place.display->id;
  });
  if (found == _asleep.end()) return nullptr;
  std::unique_ptr<ViewRun> run = std::move(*found);
  _asleep.erase(found);
  run->view->setFrame({{0, 0}, place.frame.size});
  run->show(place);
  _services.log.print("Pelmora: Screen %lu is back.", run->view->screenIndex());
  return run;
}

void SaverSession::removeView(std::size_t view) {
  auto node = _runs.extract(view);
  if (node.empty()) return;
  std::unique_ptr<ViewRun> run = std::move(node.mapped());
  run->layers.setPresenter(nullptr);
  _services.log.print("Pelmora: Screen %lu has gone.", run->view->screenIndex());
  // One that has no display cannot be asked for again.
  if (run->window.screen()) {
    _asleep.push_back(std::move(run));
    if (_asleep.size() <= kMostAsleep) return;
    run = std::move(_asleep.front());
    _asleep.erase(_asleep.begin());
  }
  std::vector<std::unique_ptr<ViewRun>> ended;
  ended.push_back(std::move(run));
  stopRuns(ended);
}

void SaverSession::startFrames() {
  _hasFrames = true;
  _firstFolder = _services.notifications.addObserver(
      "FirstFolderAdded",
      [this, &services = _services, alive = std::weak_ptr<bool>(_alive)](const auto&) {
        services.scheduler.post([this, alive] {
          if (alive.lock()) showFirstFolder();
        });
      });
  if (_runs.empty()) return;
  startFrameTimer();
  animateOneFrame();
}

void SaverSession::startFrameTimer() {
  if (_frameTimer) return;
  _frameTimer = _services.scheduler.every(_runs.begin()->second->view->animationTimeInterval(),
                                          [this] { animateOneFrame(); });
}

view::PelmoraView& SaverSession::view(std::size_t number) const { return *_runs.at(number)->view; }

void SaverSession::showFirstFolder() {
  if (_frameTimer && !isAnyShown()) animateOneFrame();
}

void SaverSession::animateOneFrame() {
  std::optional<bool> isAwake;  // asked once for all, and not for frames that come to nothing
  const auto isSeen = [&](const ViewRun& run) {
    if (!isAwake) isAwake = _power == nullptr || _power->isAwake();
    return *isAwake && !run.layers.isHidden();
  };
  const double now = _services.clock.now().seconds;
  for (const auto& [number, run] : _runs) {
    view::PelmoraView& view = *run->view;
    if (view.isAnimating() && (!wouldChange(view, now) || isSeen(*run))) view.animateOneFrame();
  }
  if (_isAnyShown || !isAnyShown()) return;
  _isAnyShown = true;
  _services.log.write("Pelmora: The first picture is up.");
}

bool SaverSession::isAnyShown() const {
  return std::any_of(_runs.begin(), _runs.end(),
                     [](const auto& pair) { return !pair.second->view->images().empty(); });
}

void SaverSession::commit() {
  for (const auto& [number, run] : _runs) run->layers.commit();
}

void SaverSession::resize(std::size_t view, const Size& size, double scale) {
  const auto found = _runs.find(view);
  if (found == _runs.end()) return;
  found->second->view->setFrame({{0, 0}, size});
  found->second->setScale(scale);
}

void SaverSession::restart() {
  stopRuns(std::exchange(_asleep, {}));
  for (const auto& [number, run] : _runs) run->view->stopAnimation();
  for (const auto& [number, run] : _runs) run->view->startAnimation();
}

void SaverSession::stop() {
  if (_frameTimer) _services.scheduler.cancel(*_frameTimer);
  _frameTimer.reset();
  _hasFrames = false;
  if (_firstFolder) _services.notifications.removeObserver(*_firstFolder);
  _firstFolder.reset();
  std::vector<std::unique_ptr<ViewRun>> runs;
  for (auto& [number, run] : _runs) runs.push_back(std::move(run));
  for (auto& run : _asleep) runs.push_back(std::move(run));
  _runs.clear();
  _asleep.clear();
  stopRuns(runs);
}

void SaverSession::stopRuns(const std::vector<std::unique_ptr<ViewRun>>& runs) {
  for (const auto& run : runs) run->view->stopAnimation();
  for (const auto& run : runs) {
    run->view->viewWillMoveToWindow(nullptr);
    run->view->viewDidMoveToWindow();
  }
}

}  // namespace pelmora::host
