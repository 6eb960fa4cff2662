#include "wayland/tests/FakeCompositor.h"

#include "wayland/Registry.h"

#include <poll.h>
#include <sys/socket.h>
#include <wayland-server.h>
#include <wlr-layer-shell-unstable-v1-server.h>

#include <string>

namespace pelmora::wayland {

namespace {

constexpr int kTurn = 5;  // milliseconds until it looks whether the test is over

FakeCompositor& compositorOf(wl_resource* resource) {
  return *static_cast<FakeCompositor*>(wl_resource_get_user_data(resource));
}

void destroyResource(wl_client* /*client*/, wl_resource* resource) {
  wl_resource_destroy(resource);
}

template <typename Implementation>
wl_resource* answer(wl_client* client, const wl_interface& interface, std::uint32_t id,
                    const Implementation* implementation, void* compositor) {
  wl_resource* resource = wl_resource_create(client, &interface, 1, id);
  wl_resource_set_implementation(resource, implementation, compositor, nullptr);
  return resource;
}

const struct wl_surface_interface kSurface = {
    .destroy = destroyResource,
    .attach = nullptr,
    .damage = nullptr,
    .frame = nullptr,
    .set_opaque_region = nullptr,
    .set_input_region = nullptr,
    .commit = [](wl_client*, wl_resource* it) { compositorOf(it).note("commit"); },
    .set_buffer_transform = nullptr,
    .set_buffer_scale = nullptr,
    .damage_buffer = nullptr,
    .offset = nullptr,
};

const struct wl_compositor_interface kCompositor = {
    .create_surface =
        [](wl_client* client, wl_resource* it, std::uint32_t id) {
          answer(client, wl_surface_interface, id, &kSurface, &compositorOf(it));
        },
    .create_region = nullptr,
};

const struct zwlr_layer_surface_v1_interface kLayerSurface = {
    .set_size =
        [](wl_client*, wl_resource* it, std::uint32_t width, std::uint32_t height) {
          compositorOf(it).note("size " + std::to_string(width) + " " + std::to_string(height));
        },
    .set_anchor =
        [](wl_client*, wl_resource* it, std::uint32_t edges) {
          compositorOf(it).note("anchor " + std::to_string(edges));
        },
    .set_exclusive_zone =
        [](wl_client*, wl_resource* it, std::int32_t zone) {
          compositorOf(it).note("zone " + std::to_string(zone));
        },
    .set_margin = nullptr,
    .set_keyboard_interactivity =
        [](wl_client*, wl_resource* it, std::uint32_t keyboard) {
          compositorOf(it).note("keyboard " + std::to_string(keyboard));
        },
    .get_popup = nullptr,
    .ack_configure =
        [](wl_client*, wl_resource* it, std::uint32_t serial) {
          compositorOf(it).note("ack " + std::to_string(serial));
        },
    .destroy =
        [](wl_client*, wl_resource* it) {
          compositorOf(it).note("destroy");
          wl_resource_destroy(it);
        },
};

const struct zwlr_layer_shell_v1_interface kLayerShell = {
    .get_layer_surface =
        [](wl_client* client, wl_resource* it, std::uint32_t id, wl_resource* /*surface*/,
           wl_resource* output, std::uint32_t layer, const char* name) {
          FakeCompositor& compositor = compositorOf(it);
          compositor.note("layer " + std::to_string(layer) + " " + name +
                          (output ? "" : " anywhere"));
          compositor.setLayer(
              answer(client, zwlr_layer_surface_v1_interface, id, &kLayerSurface, &compositor));
        },
};

void bindCompositor(wl_client* client, void* compositor, std::uint32_t, std::uint32_t id) {
  answer(client, wl_compositor_interface, id, &kCompositor, compositor);
}

void bindOutput(wl_client* client, void* compositor, std::uint32_t, std::uint32_t id) {
  answer<void>(client, wl_output_interface, id, nullptr, compositor);
}

void bindLayerShell(wl_client* client, void* compositor, std::uint32_t, std::uint32_t id) {
  answer(client, zwlr_layer_shell_v1_interface, id, &kLayerShell, compositor);
}

}  // namespace

FakeCompositor::FakeCompositor(Offers offers) : _server(wl_display_create()) {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) std::abort();
  offer(offers);
  _client = wl_client_create(_server, ends[0]);
  _display = wl_display_connect_to_fd(ends[1]);
  _thread = std::thread([this] { serve(); });
  auto* compositor =
      reinterpret_cast<wl_compositor*>(bindGlobal(_display, wl_compositor_interface, 1));
  _surface = wl_compositor_create_surface(compositor);
  wl_compositor_destroy(compositor);
  _output = reinterpret_cast<wl_output*>(bindGlobal(_display, wl_output_interface, 1));
}

void FakeCompositor::offer(Offers offers) {
  wl_global_create(_server, &wl_compositor_interface, 1, this, bindCompositor);
  wl_global_create(_server, &wl_output_interface, 1, this, bindOutput);
  if (offers == Offers::noLayers) return;
  wl_global_create(_server, &zwlr_layer_shell_v1_interface, 1, this, bindLayerShell);
}

FakeCompositor::~FakeCompositor() {
  _isEnding = true;
  _thread.join();
  wl_surface_destroy(_surface);
  wl_output_destroy(_output);
  wl_display_disconnect(_display);
  wl_display_destroy_clients(_server);
  wl_display_destroy(_server);
}

void FakeCompositor::serve() {
  wl_event_loop* loop = wl_display_get_event_loop(_server);
  pollfd ready{wl_event_loop_get_fd(loop), POLLIN, 0};
  while (!_isEnding) {
    poll(&ready, 1, kTurn);
    const std::lock_guard lock(_mutex);
    if (_isHanging) continue;
    wl_event_loop_dispatch(loop, 0);
    wl_display_flush_clients(_server);
  }
}

std::vector<std::string> FakeCompositor::requests() {
  wl_display_roundtrip(_display);
  return requestsThatCame();
}

std::vector<std::string> FakeCompositor::requestsThatCame() {
  const std::lock_guard lock(_mutex);
  return _requests;
}

void FakeCompositor::sendConfigure(std::uint32_t serial, std::uint32_t width,
                                   std::uint32_t height) {
  wl_display_roundtrip(_display);  // what was asked for has come
  {
    const std::lock_guard lock(_mutex);
    zwlr_layer_surface_v1_send_configure(_layer, serial, width, height);
  }
  wl_display_roundtrip(_display);
}

void FakeCompositor::sendClosed() {
  wl_display_roundtrip(_display);
  {
    const std::lock_guard lock(_mutex);
    zwlr_layer_surface_v1_send_closed(_layer);
  }
  wl_display_roundtrip(_display);
}

void FakeCompositor::die() {
  const std::lock_guard lock(_mutex);
  wl_client_destroy(_client);
}

}  // namespace pelmora::wayland
