#pragma once

#include "host/ConnectionLoss.h"
#include "host/DisplayCover.h"
#include "host/HostWindow.h"
#include "host/InputWatcher.h"
#include "host/QtDisplays.h"
#include "host/Renderer.h"
#include "host/ViewWindows.h"
#include "platform/linux/RunningClock.h"
#include "platform/linux/SystemClock.h"

#include <memory>

namespace pelmora::host {

/// The saver on a desktop: windows that present on the GUI thread, and the module on a thread of
/// its own. Made after the QGuiApplication; `exec` returns when the run is over. When the window
/// system goes away the views are stopped, and the process ends. Thread: GUI.
class LiveSaver {
 public:
  LiveSaver(Renderer renderer, InputWatcher::Ends ends, bool verbose);
  ~LiveSaver();

  /// A full-screen window without a pointer on every display that there is, or will be.
  void coverDisplays(DisplayCover::Layers layers = DisplayCover::Layers::wherePossible);
  /// One ordinary window; its view runs as the first display's, or as the preview.
  void openWindow(const Size& size, bool isPreview);
  /// A window that covers another program's, as that display's view or as the preview.
  void drawInto(std::unique_ptr<ForeignWindow> window);
  /// A window on every display below all others, in the place of the X server's root window.
  void drawOnRoot();
  /// Runs until there is input, every window is closed, there is nothing left to draw into, or a
  /// signal asks to end; where any input ends it, also until the desktop says that the saver does.
  /// Where the window system goes away the process ends, with the stop work done.
  int exec();

 private:
  void windowSystemGone();
  void hostWindowEnded(ForeignWindow::State state);

  const platform::SystemClock _machineClock;
  platform::RunningClock _clock{_machineClock};
  QtDisplays _displays;
  InputWatcher _input;
  std::unique_ptr<HostWindow> _hostWindow;
  ViewWindows _windows;
  ConnectionLoss _connectionLoss;
  std::unique_ptr<DisplayCover> _cover;
};

}  // namespace pelmora::host
