#pragma once

#include "render/LayerTree.h"

#include <cstdint>

class QWindow;

namespace pelmora::render {

/// A window that shows a tree. Frames are drawn only while something moves, each at the media time
/// at which it starts; at rest nothing is drawn and no timer runs. While the window is not exposed
/// nothing is drawn either, and animations run their time unseen.
/// Thread: the GUI thread; `submit` from any, until the tree has let go of the presenter.
class PresenterWindow : public Presenter {
 public:
  [[nodiscard]] virtual QWindow& window() = 0;
  /// Returns when no frame is being drawn, should that be on another thread.
  virtual void finishFrame() {}
  /// Frames drawn since the window was made.
  [[nodiscard]] virtual std::uint64_t framesDrawn() const = 0;
};

}  // namespace pelmora::render
