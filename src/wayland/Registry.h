#pragma once

#include "wayland/OwnQueue.h"

#include <chrono>
#include <cstdint>

struct wl_interface;
struct wl_proxy;

namespace pelmora::wayland {

/// Binds what a compositor offers under the interface's name, at that version; null when it offers
/// none, an older one, or does not answer in time. Its events come in the connection's default
/// queue. Blocks, but others may read from the connection meanwhile. Thread: any.
[[nodiscard]] wl_proxy* bindGlobal(wl_display* display, const wl_interface& interface,
                                   std::uint32_t version,
                                   std::chrono::milliseconds limit = kAnswerLimit);

}  // namespace pelmora::wayland
