#pragma once

#include <wayland-client.h>

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

struct wl_client;
struct wl_resource;

namespace pelmora::wayland {

/// A compositor in a thread, with surfaces, one display and, if wanted, layers. It writes down what
/// it is asked for, and sends the events that the test wants. Thread: the test's.
class FakeCompositor {
 public:
  enum class Offers { layers, noLayers };
  explicit FakeCompositor(Offers offers = Offers::layers);
  ~FakeCompositor();
  FakeCompositor(const FakeCompositor&) = delete;
  FakeCompositor& operator=(const FakeCompositor&) = delete;

  /// The connection to it.
  [[nodiscard]] wl_display* display() const { return _display; }
  [[nodiscard]] wl_surface* surface() const { return _surface; }
  [[nodiscard]] wl_output* output() const { return _output; }

  /// What was asked for so far of surfaces and layers.
  [[nodiscard]] std::vector<std::string> requests();
  /// Of that, what has come without waiting for more.
  [[nodiscard]] std::vector<std::string> requestsThatCame();
  // Events, which have arrived and were dispatched when these return.
  void sendConfigure(std::uint32_t serial, std::uint32_t width, std::uint32_t height);
  void sendClosed();
  /// It answers nothing more.
  void hang() {
    const std::lock_guard lock(_mutex);
    _isHanging = true;
  }
  /// It drops the connection.
  void die();

  // For the handlers of requests, in its thread.
  void note(std::string request) { _requests.push_back(std::move(request)); }
  void setLayer(wl_resource* layer) { _layer = layer; }

 private:
  void offer(Offers offers);
  void serve();

  struct ::wl_display* _server = nullptr;  // under the mutex, with all that is in it
  wl_client* _client = nullptr;
  wl_resource* _layer = nullptr;
  std::vector<std::string> _requests;
  std::mutex _mutex;
  std::atomic<bool> _isHanging{false};
  std::atomic<bool> _isEnding{false};
  std::thread _thread;

  wl_display* _display = nullptr;
  wl_surface* _surface = nullptr;
  wl_output* _output = nullptr;
};

}  // namespace pelmora::wayland
