#include "wayland/Registry.h"

#include <wayland-client.h>

#include <cstdint>
#include <cstring>

namespace pelmora::wayland {

namespace {

/// What is looked for, and what came of it.
struct Search {
  const wl_interface& interface;
  std::uint32_t version;
  std::uint32_t name = 0;
  bool isFound = false;
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

constexpr wl_registry_listener kListener = {globalAnnounced, globalRemoved};

wl_proxy* bindFound(wl_registry* registry, const Search& search) {
  void* bound = wl_registry_bind(registry, search.name, &search.interface, search.version);
  auto* proxy = static_cast<wl_proxy*>(bound);
  if (proxy) wl_proxy_set_queue(proxy, nullptr);
  return proxy;
}

}  // namespace

wl_proxy* bindGlobal(wl_display* display, const wl_interface& interface, std::uint32_t version,
                     std::chrono::milliseconds limit) {
  OwnQueue queue(display);
  if (!queue.display()) return nullptr;
  Search search{interface, version};
  wl_registry* registry = wl_display_get_registry(queue.display());
  wl_registry_add_listener(registry, &kListener, &search);
  const bool isAnswered = queue.roundTrip(limit);
  wl_proxy* bound = isAnswered && search.isFound ? bindFound(registry, search) : nullptr;
  wl_registry_destroy(registry);
  return bound;
}

}  // namespace pelmora::wayland
