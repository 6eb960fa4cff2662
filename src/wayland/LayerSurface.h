#pragma once

#include <cstdint>
#include <functional>

struct wl_output;
struct wl_surface;
struct zwlr_layer_surface_v1;

namespace pelmora::wayland {

class LayerShell;

/// Makes a surface cover one display above everything, panels too, and take the keyboard. The
/// surface has no role yet and nothing to show: it must not be drawn to before `configured` has
/// been called. It outlives this, and is shown no longer after this has gone. Thread: the one that
/// dispatches the connection's default queue. Units: the compositor's points.
class LayerSurface {
 public:
  struct Events {
    /// The size to have from the next frame on; 0 × 0 where the compositor has no wish.
    std::function<void(std::uint32_t width, std::uint32_t height)> configured;
    /// The compositor shows the surface no longer. May destroy this.
    std::function<void()> closed;
  };

  LayerSurface(const LayerShell& shell, wl_surface* surface, wl_output* output, Events events);
  ~LayerSurface();
  LayerSurface(const LayerSurface&) = delete;
  LayerSurface& operator=(const LayerSurface&) = delete;

 private:
  static void heardConfigure(void* data, zwlr_layer_surface_v1* layer, std::uint32_t serial,
                             std::uint32_t width, std::uint32_t height);
  static void heardClosed(void* data, zwlr_layer_surface_v1* layer);

  Events _events;
  zwlr_layer_surface_v1* _layer;
};

}  // namespace pelmora::wayland
