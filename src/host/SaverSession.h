#pragma once

#include "host/DisplayPower.h"
#include "platform/Displays.h"
#include "platform/NotificationCenter.h"
#include "platform/Scheduler.h"
#include "platform/Services.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::render {
class LayerTree;
class Presenter;
}  // namespace pelmora::render

namespace pelmora::view {
class PelmoraView;
}

namespace pelmora::host {

/// Where one view goes: a display, or the preview.
struct ViewPlace {
  Rect frame;                                // handed to the view at first: the display's frame
  double scale = 1;                          // device pixels in a point
  std::optional<platform::Display> display;  // what the view's window says it is on
  bool isPreview = false;
  render::Presenter* presenter = nullptr;  // must outlive the session
  unsigned skippedDraws = 0;               // random numbers left out before the view's first
};

/// One run of the saver: makes a view for each place, drives them with the calls that a saver host
/// makes, in their order, and stops them again. Frames come every 0.5 s for all views together; the
/// first folder found brings one forward, so that a picture is not half a second late. A view that
/// nobody can see gets no frame with which it would change: nothing is chosen, loaded or drawn for
/// it, and it goes on at the first frame after.
/// Views may come and go in a run. The stop work of one view ends the walk of all, and writes the
/// folder cache for good; so a view whose display has gone sleeps, with its pile, until the display
/// is back or the run ends. Only when too many sleep, the one that has slept longest is stopped.
/// Thread: the module's main thread.
class SaverSession {
 public:
  /// `power`, where it can be asked, outlives the session.
  explicit SaverSession(const platform::Services& services, DisplayPower* power = nullptr);
  /// Ends the run, if it was not ended, and lets go of the shared source list and cache.
  ~SaverSession();

  /// Views that sleep at the same time, at most.
  static constexpr std::size_t kMostAsleep = 4;

  /// Makes and starts the views.
  void start(const std::vector<ViewPlace>& places);
  /// Makes and starts one more view, or wakes the one that sleeps for the place's display. Gives
  /// its number: they count up from 0, and none is given twice.
  std::size_t addView(const ViewPlace& place);
  /// The view's place is no more, and its presenter is not used again. An unknown number is
  /// ignored.
  void removeView(std::size_t view);
  /// Starts the frame timer: a frame at once, then one every 0.5 s.
  void startFrames();
  /// One frame of every view that is animating and can be seen.
  void animateOneFrame();
  /// Commits what changed in the layers; the scheduler's end of each turn.
  void commit();
  /// Stops the views and starts them anew, with the preferences as they are now.
  void restart();
  /// The stop sequence.
  void stop();
  /// The place of a view changed its size or scale. An unknown number is ignored.
  void resize(std::size_t view, const Size& size, double scale);

  /// Those that are awake.
  [[nodiscard]] std::size_t viewCount() const { return _runs.size(); }
  [[nodiscard]] view::PelmoraView& view(std::size_t number) const;

 private:
  struct ViewRun;

  [[nodiscard]] std::unique_ptr<ViewRun> makeRun(const ViewPlace& place) const;
  [[nodiscard]] std::unique_ptr<ViewRun> takeAsleep(const ViewPlace& place);
  static void stopRuns(const std::vector<std::unique_ptr<ViewRun>>& runs);
  void startFrameTimer();
  void showFirstFolder();
  [[nodiscard]] bool isAnyShown() const;

  const platform::Services& _services;
  DisplayPower* const _power;
  std::map<std::size_t, std::unique_ptr<ViewRun>> _runs;  // by number
  std::vector<std::unique_ptr<ViewRun>> _asleep;          // the longest first
  std::size_t _nextNumber = 0;
  bool _hasFrames = false;
  std::optional<platform::Scheduler::TimerId> _frameTimer;
  std::optional<platform::NotificationCenter::Token> _firstFolder;
  bool _isAnyShown = false;
  std::shared_ptr<bool> _alive = std::make_shared<bool>(true);
};

}  // namespace pelmora::host
