#pragma once

#include "idle/IdleMonitor.h"
#include "shared/Result.h"

#include <QSocketNotifier>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

struct wl_callback;
struct wl_display;
struct wl_registry;
struct ext_idle_notifier_v1;
struct org_kde_kwin_idle;

namespace pelmora::idle {

/// A Wayland compositor that tells of idleness: by ext-idle-notify-v1, or by KDE's protocol before
/// it. Idle inhibitors of windows are the compositor's to heed. The user is idle when all seats
/// are. Thread: main. Errors: a compositor that goes, or breaks the protocol, is told once by
/// `lost`.
class WaylandIdleMonitor : public IdleMonitor {
 public:
  struct Needs {
    /// What the compositor offers is known: whether that is to tell of idleness.
    std::function<void(bool tellsOfIdleness)> ready;
    std::function<void(const std::string& why)> lost;
  };

  /// Connects to the compositor of the environment, or to the one of this socket.
  static Result<std::unique_ptr<WaylandIdleMonitor>> open(const char* socket = nullptr);
  ~WaylandIdleMonitor() override;
  WaylandIdleMonitor(const WaylandIdleMonitor&) = delete;
  WaylandIdleMonitor& operator=(const WaylandIdleMonitor&) = delete;

  /// Watches the connection; `ready` comes later.
  void attach(Needs needs);
  /// Once it is ready and the compositor tells of idleness.
  void start(std::chrono::seconds delay, Events events) override;

 private:
  class Seat;
  struct Listeners;

  explicit WaylandIdleMonitor(wl_display* display);

  void globalAdded(std::uint32_t name, const char* interface, std::uint32_t version);
  void globalRemoved(std::uint32_t name);
  void readEvents();
  void flush();
  void follow(Seat& seat);
  void update();
  void lose();

  wl_display* const _display;
  wl_registry* _registry = nullptr;
  wl_callback* _listed = nullptr;
  ext_idle_notifier_v1* _notifier = nullptr;
  org_kde_kwin_idle* _kwinIdle = nullptr;
  std::vector<std::unique_ptr<Seat>> _seats;
  Needs _needs;
  std::unique_ptr<QSocketNotifier> _readable;
  std::unique_ptr<QSocketNotifier> _writable;  // on while the compositor is behind in reading
  std::chrono::milliseconds _delay{};          // 0 until it is started
  Events _events;
  bool _isIdle = false;
  bool _isLost = false;
};

}  // namespace pelmora::idle
