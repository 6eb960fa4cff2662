#include "host/WindowChoice.h"

#include "platform/PrintableLine.h"

namespace pelmora::host {

namespace {

constexpr const char* kVariable = "XSCREENSAVER_WINDOW";

/// Where a run without a window to draw into draws.
WindowChoice withoutWindow(const WindowWishes& wishes, std::string note) {
  WindowChoice choice;
  if (wishes.root && wishes.hasRootWindow) choice.place = WindowChoice::Place::root;
  choice.note = std::move(note);
  return choice;
}

}  // namespace

Result<WindowChoice> chooseWindow(const WindowWishes& wishes) {
  if (wishes.windowOption) {
    const auto window = parseWindowId(*wishes.windowOption);
    if (!window) {
      return Error{"--window-id: '" + platform::printableLine(*wishes.windowOption) +
                   "' is not the number of a window"};
    }
    return WindowChoice{WindowChoice::Place::window, *window};
  }
  if (!wishes.variable || wishes.variable->empty()) return withoutWindow(wishes, "");
  const auto window = parseWindowId(*wishes.variable);
  if (!window) {
    return withoutWindow(wishes, std::string(kVariable) + " names no window, and is ignored: '" +
                                     platform::printableLine(*wishes.variable) + "'");
  }
  if (!wishes.hasXServer) {
    return withoutWindow(
        wishes, std::string(kVariable) + " is ignored, as no X server answers that could have it");
  }
  return WindowChoice{WindowChoice::Place::window, *window};
}

}  // namespace pelmora::host
