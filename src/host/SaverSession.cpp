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
    view->setBackingScaleFactor(place.scale);
    layers.setScale(place.scale);
    layers.setPresenter(place.presenter);
    // The view has seeded them.
    for (unsigned i = 0; i < place.skippedDraws; ++i) static_cast<void>(randomDoubleBetween(0, 1));
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
  for (const ViewPlace& place : places) {
    _runs.push_back(std::make_unique<ViewRun>(_services, place));
    ViewRun& run = *_runs.back();
    run.view->viewWillMoveToWindow(&run.window);
    // In its window a view's frame is the window's content, whose origin is zero.
    run.view->setFrame({{0, 0}, place.frame.size});
    run.view->viewDidMoveToWindow();
    run.view->startAnimation();
  }
}

void SaverSession::startFrames() {
  if (_runs.empty()) return;
  _firstFolder = _services.notifications.addObserver(
      "FirstFolderAdded",
      [this, &services = _services, alive = std::weak_ptr<bool>(_alive)](const auto&) {
        services.scheduler.post([this, alive] {
          if (alive.lock()) showFirstFolder();
        });
      });
  _frameTimer = _services.scheduler.every(_runs.front()->view->animationTimeInterval(),
                                          [this] { animateOneFrame(); });
  animateOneFrame();
}

view::PelmoraView& SaverSession::view(std::size_t index) const { return *_runs.at(index)->view; }

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
  for (const auto& run : _runs) {
    view::PelmoraView& view = *run->view;
    if (view.isAnimating() && (!wouldChange(view, now) || isSeen(*run))) view.animateOneFrame();
  }
  if (_isAnyShown || !isAnyShown()) return;
  _isAnyShown = true;
  _services.log.write("Pelmora: The first picture is up.");
}

bool SaverSession::isAnyShown() const {
  return std::any_of(_runs.begin(), _runs.end(),
                     [](const auto& run) { return !run->view->images().empty(); });
}

void SaverSession::commit() {
  for (const auto& run : _runs) run->layers.commit();
}

void SaverSession::resize(std::size_t view, const Size& size, double scale) {
  ViewRun& run = *_runs.at(view);
  run.view->setFrame({{0, 0}, size});
  run.view->setBackingScaleFactor(scale);
  run.layers.setScale(scale);
}

void SaverSession::restart() {
  for (const auto& run : _runs) run->view->stopAnimation();
  for (const auto& run : _runs) run->view->startAnimation();
}

void SaverSession::stop() {
  if (_frameTimer) _services.scheduler.cancel(*_frameTimer);
  _frameTimer.reset();
  if (_firstFolder) _services.notifications.removeObserver(*_firstFolder);
  _firstFolder.reset();
  for (const auto& run : _runs) run->view->stopAnimation();
  for (const auto& run : _runs) {
    run->view->viewWillMoveToWindow(nullptr);
    run->view->viewDidMoveToWindow();
  }
  _runs.clear();
}

}  // namespace pelmora::host
