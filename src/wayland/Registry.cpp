#include "wayland/Registry.h"

#include <poll.h>
#include <wayland-client.h>

#include <cstring>

namespace pelmora::wayland {

namespace {

using SteadyClock = std::chrono::steady_clock;

/// What is looked for, and what came of it.
struct Search {
  const wl_interface& interface;
  std::uint32_t version;
  std::uint32_t name = 0;
  bool isFound = false;
  bool isAnswered = false;
};

void globalAnnounced(void* data, wl_registry* /*registry*/, std::uint32_t name,
                     const char* interface, std::uint32_t version) {
  auto& search = *static_cast<Search*>(data);
  if (search.isFound || version < search.version) return;
  if (std::strcmp(interface, search.interface.name) != 0) return;
  search.name = name;
  search.isFound = true;
}

void globalRemoved(void* data, wl_registry* /*registry*/, std::uint32_t name) {
  auto& search = *static_cast<Search*>(data);
  if (search.name == name) search.isFound = false;
}

void answered(void* data, wl_callback* /*callback*/, std::uint32_t /*serial*/) {
  static_cast<Search*>(data)->isAnswered = true;
}

constexpr wl_registry_listener kRegistryListener = {globalAnnounced, globalRemoved};
constexpr wl_callback_listener kAnswerListener = {answered};

/// Reads what has come for the queue, or waits for it until the deadline; false when there is
/// nothing more to hope for.
bool readEvents(wl_display* display, wl_event_queue* queue, SteadyClock::time_point deadline) {
  if (wl_display_prepare_read_queue(display, queue) != 0) {
    return wl_display_dispatch_queue_pending(display, queue) >= 0;
  }
  wl_display_flush(display);
  const auto left =
      std::chrono::duration_cast<std::chrono::milliseconds>(deadline - SteadyClock::now());
  pollfd ready{wl_display_get_fd(display), POLLIN, 0};
  if (left.count() <= 0 || poll(&ready, 1, static_cast<int>(left.count())) <= 0) {
    wl_display_cancel_read(display);
    return false;
  }
  return wl_display_read_events(display) == 0 &&
         wl_display_dispatch_queue_pending(display, queue) >= 0;
}

/// A copy of a proxy whose new objects have their events in the queue.
template <typename Proxy>
Proxy* onQueue(Proxy* proxy, wl_event_queue* queue) {
  auto* copy = static_cast<Proxy*>(wl_proxy_create_wrapper(proxy));
  if (copy) wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(copy), queue);
  return copy;
}

wl_proxy* bindFound(wl_registry* registry, const Search& search) {
  void* bound = wl_registry_bind(registry, search.name, &search.interface, search.version);
  auto* proxy = static_cast<wl_proxy*>(bound);
  if (proxy) wl_proxy_set_queue(proxy, nullptr);
  return proxy;
}

}  // namespace

wl_proxy* bindGlobal(wl_display* display, const wl_interface& interface, std::uint32_t version,
                     std::chrono::milliseconds limit) {
  const auto deadline = SteadyClock::now() + limit;
  wl_event_queue* queue = wl_display_create_queue(display);
  if (!queue) return nullptr;
  wl_display* onOwnQueue = onQueue(display, queue);
  Search search{interface, version};
  wl_registry* registry = wl_display_get_registry(onOwnQueue);
  wl_registry_add_listener(registry, &kRegistryListener, &search);
  wl_callback* answer = wl_display_sync(onOwnQueue);
  wl_callback_add_listener(answer, &kAnswerListener, &search);
  while (!search.isAnswered && readEvents(display, queue, deadline)) {
  }
  wl_proxy* bound = search.isAnswered && search.isFound ? bindFound(registry, search) : nullptr;
  wl_callback_destroy(answer);
  wl_registry_destroy(registry);
  wl_proxy_wrapper_destroy(onOwnQueue);
  wl_event_queue_destroy(queue);
  return bound;
}

}  // namespace pelmora::wayland
