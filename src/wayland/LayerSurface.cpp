#include "wayland/LayerSurface.h"

#include "wayland/LayerShell.h"

#include <wlr-layer-shell-unstable-v1-client.h>

#include <utility>

namespace pelmora::wayland {

namespace {

constexpr std::uint32_t kAllEdges =
    ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
    ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
constexpr std::int32_t kOverEverything = -1;

}  // namespace

LayerSurface::LayerSurface(const LayerShell& shell, wl_surface* surface, wl_output* output,
                           Events events)
    : _events(std::move(events)),
      _layer(zwlr_layer_shell_v1_get_layer_surface(
          shell.handle(), surface, output, ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "screensaver")) {
  static constexpr zwlr_layer_surface_v1_listener kListener = {heardConfigure, heardClosed};
  zwlr_layer_surface_v1_add_listener(_layer, &kListener, this);
  zwlr_layer_surface_v1_set_size(_layer, 0, 0);
  zwlr_layer_surface_v1_set_anchor(_layer, kAllEdges);
  zwlr_layer_surface_v1_set_exclusive_zone(_layer, kOverEverything);
  zwlr_layer_surface_v1_set_keyboard_interactivity(_layer, 1);
  // Without content, this asks for the first size.
  wl_surface_commit(surface);
}

LayerSurface::~LayerSurface() { zwlr_layer_surface_v1_destroy(_layer); }

void LayerSurface::heardConfigure(void* data, zwlr_layer_surface_v1* layer, std::uint32_t serial,
                                  std::uint32_t width, std::uint32_t height) {
  zwlr_layer_surface_v1_ack_configure(layer, serial);
  static_cast<LayerSurface*>(data)->_events.configured(width, height);
}

void LayerSurface::heardClosed(void* data, zwlr_layer_surface_v1* /*layer*/) {
  // A copy: the call may end the object that holds the function.
  const auto closed = static_cast<LayerSurface*>(data)->_events.closed;
  closed();
}

}  // namespace pelmora::wayland
