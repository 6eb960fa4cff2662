#pragma once

#include "wayland/Registry.h"

#include <memory>

struct wl_display;
struct zwlr_layer_shell_v1;

namespace pelmora::wayland {

/// That a compositor has layers above its windows and panels. Thread: the one that dispatches the
/// connection's default queue, on Qt the GUI thread. The connection outlives it.
class LayerShell {
 public:
  /// Null when the compositor has no layers, or does not answer in time. Blocks meanwhile.
  [[nodiscard]] static std::unique_ptr<LayerShell> find(
      wl_display* display, std::chrono::milliseconds limit = kAnswerLimit);
  ~LayerShell();
  LayerShell(const LayerShell&) = delete;
  LayerShell& operator=(const LayerShell&) = delete;

  [[nodiscard]] zwlr_layer_shell_v1* handle() const { return _shell; }

 private:
  explicit LayerShell(zwlr_layer_shell_v1* shell) : _shell(shell) {}

  zwlr_layer_shell_v1* _shell;
};

}  // namespace pelmora::wayland
