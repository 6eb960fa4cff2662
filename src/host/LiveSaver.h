#pragma once

#include "host/HostWindow.h"
#include "host/InputWatcher.h"
#include "host/ModuleThread.h"
#include "host/QtDisplays.h"
#include "host/Renderer.h"
#include "platform/linux/SystemClock.h"
#include "render/PresenterWindow.h"

#include <memory>
#include <vector>

namespace pelmora::host {

/// The saver on a desktop: windows that present on the GUI thread, and the module on a thread of
/// its own. Made after the QGuiApplication; `exec` returns when the run is over. Thread: GUI.
class LiveSaver {
 public:
  LiveSaver(Renderer renderer, InputWatcher::Ends ends, bool verbose);
  ~LiveSaver();

  /// A full-screen window without a pointer on every display.
  void coverDisplays();
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
  render::PresenterWindow& addWindow(ViewPlace place);
  void followSize(std::size_t index);

  const Renderer _renderer;
  const ServiceChoices _choices;
  platform::SystemClock _clock;
  QtDisplays _displays;
  InputWatcher _input;
  std::unique_ptr<HostWindow> _hostWindow;
  std::vector<std::unique_ptr<render::PresenterWindow>> _windows;
  std::vector<ViewPlace> _places;
  std::unique_ptr<ModuleThread> _module;  // ends before the windows go
};

}  // namespace pelmora::host
