#pragma once

#include "render/Layer.h"

#include <memory>

namespace pelmora::platform {
class Clock;
class Scheduler;
}  // namespace pelmora::platform

namespace pelmora::render {

struct Snapshot;

/// Takes what a tree shows, to present it. `submit` is called on main and must not wait.
class Presenter {
 public:
  virtual ~Presenter() = default;
  virtual void submit(std::shared_ptr<const Snapshot> snapshot) = 0;
  /// Whether it was shown, and now nobody can see it: its window is minimised or covered, or its
  /// display is off, as far as the window system says so. Called on main.
  [[nodiscard]] virtual bool isHidden() const { return false; }
};

/// One view's layers and the way to its presenter. Changes to the layers made in one turn of the
/// run loop are committed together, as one immutable snapshot.
/// When a frame first shows an animation its begin is fixed (by the presenter, in the snapshot's
/// shared record); the tree then ends it when its time has run, and tells its delegate. One that no
/// frame can show, as its layer was taken away before, begins with the commit that finds it gone.
/// Destruction removes the animations that still run.
/// Thread: main.
class LayerTree {
 public:
  LayerTree(platform::Clock& clock, platform::Scheduler& scheduler, std::shared_ptr<Layer> root);
  ~LayerTree();

  /// Nothing is submitted while there is no presenter, and animations run their time unseen. The
  /// presenter must outlive its use here.
  void setPresenter(Presenter* presenter);
  /// Device pixels in a point, for what is rendered ahead of the frame (shadows).
  void setScale(double scale);

  /// Makes a snapshot and submits it, if anything has changed since the last. Hosts call this at
  /// the end of every turn of the run loop.
  void commit();

  /// Whether the presenter is hidden.
  [[nodiscard]] bool isHidden() const;
  [[nodiscard]] Layer& root() const;

 private:
  struct State;
  std::shared_ptr<State> _state;
};

}  // namespace pelmora::render
