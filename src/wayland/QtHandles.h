#pragma once

class QScreen;
class QWindow;
struct wl_display;
struct wl_output;
struct wl_surface;

namespace pelmora::wayland {

/// Makes Qt give windows with `Qt::BypassWindowManagerHint` a surface without a role. For main,
/// before it starts other threads.
void allowBareSurfaces();

// What is behind Qt's objects; null where Qt does not use Wayland. Qt's own: not to be destroyed.
// Thread: GUI.

/// The connection.
[[nodiscard]] wl_display* displayOfApplication();
/// Null also for a screen that stands for none.
[[nodiscard]] wl_output* outputOf(QScreen& screen);
/// Null also before the window was created, and once it was hidden.
[[nodiscard]] wl_surface* surfaceOf(QWindow& window);

}  // namespace pelmora::wayland
