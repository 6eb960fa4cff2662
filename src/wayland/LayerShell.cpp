#include "wayland/LayerShell.h"

#include <wlr-layer-shell-unstable-v1-client.h>

namespace pelmora::wayland {

std::unique_ptr<LayerShell> LayerShell::find(wl_display* display, std::chrono::milliseconds limit) {
  // The first version has all that is used.
  wl_proxy* bound = bindGlobal(display, zwlr_layer_shell_v1_interface, 1, limit);
  if (!bound) return nullptr;
  return std::unique_ptr<LayerShell>(new LayerShell(reinterpret_cast<zwlr_layer_shell_v1*>(bound)));
}

LayerShell::~LayerShell() { zwlr_layer_shell_v1_destroy(_shell); }

}  // namespace pelmora::wayland
