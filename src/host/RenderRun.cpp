#include "host/RenderRun.h"

#include "host/LayerListing.h"
#include "host/LinuxServices.h"
#include "host/OffscreenPresenter.h"
#include "host/PictureFile.h"
#include "host/RenderCommand.h"
#include "host/SaverSession.h"
#include "platform/linux/SystemClock.h"
#include "platform/OperationQueue.h"
#include "platform/SteppedTime.h"
#include "render/Snapshot.h"
#include "sources/PMSourceList.h"
#include "view/PelmoraView.h"

#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace pelmora::host {

namespace {

/// The displays that the request names.
class RequestedDisplays : public platform::Displays {
 public:
  explicit RequestedDisplays(const std::vector<platform::Display>& screens) : _screens(screens) {}
  [[nodiscard]] std::vector<platform::Display> screens() const override { return _screens; }

 private:
  const std::vector<platform::Display>& _screens;
};

/// One run. Members are in the order in which they need each other.
class Run {
 public:
  explicit Run(const RenderRequest& request);

  Status start();
  Status writeMoments();
  void stop() { _session.stop(); }

 private:
  void settle();
  void advanceTo(double seconds);
  [[nodiscard]] std::vector<ViewPlace> places();
  [[nodiscard]] OffscreenPresenter& written();
  Status writeFrame(int number, double time);
  Status writeMoment();
  Status writeListing();

  const RenderRequest& _request;
  platform::SteppedClock _clock;
  platform::SteppedScheduler _scheduler;
  RequestedDisplays _displays;
  LinuxServices _linux;
  std::vector<std::unique_ptr<OffscreenPresenter>> _presenters;
  SaverSession _session;
};

Run::Run(const RenderRequest& request)
    : _request(request),
      _clock(request.start.value_or(platform::SystemClock().now())),
      _scheduler(_clock),
      _displays(request.displays),
      _linux({.clock = &_clock,
              .scheduler = &_scheduler,
              .displays = &_displays,
              .verbose = request.verbose,
              .samplesWhenNoPictures = request.samples,
              .track = request.track,
              .enumerationConcurrency = 1}),
      _session(_linux.services()) {
  _scheduler.setEndOfTurn([this] { _session.commit(); });
}

std::vector<ViewPlace> Run::places() {
  std::vector<ViewPlace> places;
  if (_request.screen == 0) {
    places.push_back({.frame = {{0, 0}, _request.previewSize},
                      .scale = _request.scale,
                      .display = _request.displays.front(),
                      .isPreview = true});
  } else {
    for (const platform::Display& display : _request.displays) {
      places.push_back({.frame = display.frame, .scale = display.scale, .display = display});
    }
  }
  for (ViewPlace& place : places) {
    _presenters.push_back(
        std::make_unique<OffscreenPresenter>(_clock, place.frame.size, place.scale));
    place.presenter = _presenters.back().get();
  }
  return places;
}

Status Run::start() {
  _session.start(places());
  if (_request.settle) settle();
  _session.startFrames();
  _session.commit();
  return Done{};
}

void Run::settle() {
  const auto list = _session.view(0).sourceList();
  if (!list) return;
  std::atomic<bool> walked{false};
  std::jthread waiter([&] {
    list->enumQueue().waitUntilAllOperationsAreFinished();
    list->waitUntilGathered();
    walked = true;
    _scheduler.wake();
  });
  _scheduler.runPostedUntil([&walked] { return walked.load(); });
}

void Run::advanceTo(double seconds) {
  if (seconds > _clock.mediaTime()) _scheduler.advanceTo(seconds);
}

OffscreenPresenter& Run::written() {
  return *_presenters[_request.screen == 0 ? 0 : _request.screen - 1];
}

/// The film's frames and the moment, in the order of their times.
Status Run::writeMoments() {
  bool isMomentWritten = false;
  for (int i = 0; i < _request.frameCount(); ++i) {
    const double time = _request.from + i / _request.fps;
    if (!isMomentWritten && _request.at <= time) {
      if (Status status = writeMoment(); !status) return status;
      isMomentWritten = true;
    }
    if (Status status = writeFrame(i, time); !status) return status;
  }
  return isMomentWritten ? Status(Done{}) : writeMoment();
}

Status Run::writeFrame(int number, double time) {
  if (number == 0) {
    std::error_code problem;
    std::filesystem::create_directories(_request.frames, problem);
    if (problem) return Error{_request.frames + ": " + problem.message()};
  }
  advanceTo(time);
  char name[32];
  std::snprintf(name, sizeof name, "/frame%06d.png", number);
  return writePicture(_request.frames + name, written().paint(time));
}

Status Run::writeMoment() {
  advanceTo(_request.at);
  if (!_request.out.empty()) {
    const Status status = writePicture(_request.out, written().paint(_clock.mediaTime()));
    if (!status) return status;
  }
  return _request.layers.empty() ? Status(Done{}) : writeListing();
}

Status Run::writeListing() {
  const double now = _clock.mediaTime();
  QJsonArray views;
  for (std::size_t i = 0; i < _session.viewCount(); ++i) {
    const auto snapshot = _presenters[i]->snapshot();
    if (snapshot) views.append(layerListing(_session.view(i), *snapshot, 0, now));
  }
  const QJsonObject listing{{"time", now}, {"views", views}};
  return writeFile(_request.layers, QJsonDocument(listing).toJson());
}

}  // namespace

Status renderPictures(const RenderRequest& request) {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  int count = 1;
  char name[] = "pelmora";
  char* words[] = {name, nullptr};
  const QGuiApplication application(count, words);
  Run run(request);
  Status status = run.start();
  if (status) status = run.writeMoments();
  run.stop();
  return status;
}

}  // namespace pelmora::host
