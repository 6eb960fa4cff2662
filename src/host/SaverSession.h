#pragma once

#include "host/DisplayPower.h"
#include "platform/Displays.h"
#include "platform/NotificationCenter.h"
#include "platform/Scheduler.h"
#include "platform/Services.h"

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
/// Thread: the module's main thread.
class SaverSession {
 public:
  /// `power`, where it can be asked, outlives the session.
  explicit SaverSession(const platform::Services& services, DisplayPower* power = nullptr);
  /// Ends the run, if it was not ended, and lets go of the shared source list and cache.
  ~SaverSession();

  /// Makes and starts the views.
  void start(const std::vector<ViewPlace>& places);
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
  /// The place of a view changed its size or scale.
  void resize(std::size_t view, const Size& size, double scale);

  [[nodiscard]] std::size_t viewCount() const { return _runs.size(); }
  [[nodiscard]] view::PelmoraView& view(std::size_t index) const;

 private:
  struct ViewRun;

  void showFirstFolder();
  [[nodiscard]] bool isAnyShown() const;

  const platform::Services& _services;
  DisplayPower* const _power;
  std::vector<std::unique_ptr<ViewRun>> _runs;
  std::optional<platform::Scheduler::TimerId> _frameTimer;
  std::optional<platform::NotificationCenter::Token> _firstFolder;
  bool _isAnyShown = false;
  std::shared_ptr<bool> _alive = std::make_shared<bool>(true);
};

}  // namespace pelmora::host
