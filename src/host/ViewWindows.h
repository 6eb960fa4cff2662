#pragma once

#include "host/ModuleThread.h"
#include "host/Renderer.h"
#include "render/PresenterWindow.h"

#include <QObject>

#include <cstddef>
#include <map>
#include <memory>

namespace pelmora::host {

/// The windows of a run, each with a view, whose size and scale it follows. Windows may come and go
/// while the run lasts. Thread: GUI; `end` on any. Destruction ends the run, then the windows go.
class ViewWindows : public QObject {
 public:
  /// Starts the module's thread. Every window is watched by `input`, which outlives this.
  ViewWindows(Renderer renderer, platform::Clock& clock, platform::Displays& displays,
              ServiceChoices choices, QObject& input);
  ~ViewWindows() override;

  /// Makes a window, which is not shown yet, and starts its view there.
  [[nodiscard]] QWindow& add(ViewPlace place);
  /// Waits a moment until nothing is being drawn in the window, or in any, which shows nothing new
  /// then, and may be off the screen already: it has to be hidden or destroyed at once, and comes
  /// before that.
  void finishFrame(QWindow& window);
  void finishFrames();
  /// Takes a window off the screen and its view out of the run; the window is not to be used again.
  void remove(QWindow& window);
  /// Takes all windows off the screen.
  void hide();
  /// Ends the run: the views are stopped, and draw no more.
  void end() { _module.end(); }

  [[nodiscard]] bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  struct Shown {
    std::unique_ptr<render::PresenterWindow> presenter;
    std::size_t view;
    Size size;
    double scale;
  };
  void follow(QWindow& window);

  const Renderer _renderer;
  platform::Clock& _clock;
  QObject& _input;
  std::map<QObject*, Shown> _shown;    // by window
  std::map<QObject*, Shown> _leaving;  // until their views have let go of them
  ModuleThread _module;                // ends before the windows go
};

}  // namespace pelmora::host
