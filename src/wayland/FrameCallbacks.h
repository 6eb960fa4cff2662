#pragma once

#include <chrono>
#include <vector>

class QWindow;

namespace pelmora::wayland {

/// Returns when the compositor has called back for the last frame of each window, or has no more
/// reason to: a window for which it has not within the limit, or that is hidden, is taken off the
/// screen, and has to be hidden or destroyed before events are handled again. To be called before
/// windows are hidden or destroyed, when nothing draws in them any more. Qt 6.4 forgets a window's
/// callback on the GUI thread without asking the thread that may be at it just then, which crashes.
/// Update requests of the windows are eaten meanwhile. Does nothing where Qt does not use Wayland.
/// Thread: GUI.
void awaitFrameCallbacks(const std::vector<QWindow*>& windows, std::chrono::milliseconds limit);

}  // namespace pelmora::wayland
