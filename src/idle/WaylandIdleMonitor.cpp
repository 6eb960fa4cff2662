#include "idle/WaylandIdleMonitor.h"

#include "ext-idle-notify-v1-client-protocol.h"
#include "idle-client-protocol.h"

#include <wayland-client.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace pelmora::idle {

/// A seat and what the compositor says of it. Owned by the monitor, which hears of changes.
class WaylandIdleMonitor::Seat {
 public:
  Seat(WaylandIdleMonitor& monitor, std::uint32_t name, wl_seat* seat)
      : _monitor(monitor), _name(name), _seat(seat) {}
  ~Seat() {
    if (_notification) ext_idle_notification_v1_destroy(_notification);
    if (_timeout) org_kde_kwin_idle_timeout_release(_timeout);
    wl_seat_destroy(_seat);
  }
  Seat(const Seat&) = delete;
  Seat& operator=(const Seat&) = delete;

  void follow(ext_idle_notifier_v1* notifier, std::uint32_t milliseconds);
  void follow(org_kde_kwin_idle* idle, std::uint32_t milliseconds);
  void set(bool isIdle) {
    _isIdle = isIdle;
    _monitor.update();
  }

  [[nodiscard]] std::uint32_t name() const { return _name; }
  [[nodiscard]] bool isIdle() const { return _isIdle; }

 private:
  WaylandIdleMonitor& _monitor;
  const std::uint32_t _name;  // among the compositor's globals
  wl_seat* const _seat;
  ext_idle_notification_v1* _notification = nullptr;
  org_kde_kwin_idle_timeout* _timeout = nullptr;
  bool _isIdle = false;
};

struct WaylandIdleMonitor::Listeners {
  static constexpr wl_registry_listener kRegistry = {
      .global =
          [](void* data, wl_registry*, std::uint32_t name, const char* interface,
             std::uint32_t version) {
            static_cast<WaylandIdleMonitor*>(data)->globalAdded(name, interface, version);
          },
      .global_remove =
          [](void* data, wl_registry*, std::uint32_t name) {
            static_cast<WaylandIdleMonitor*>(data)->globalRemoved(name);
          }};

  static constexpr wl_callback_listener kListed = {
      .done = [](void* data, wl_callback* callback, std::uint32_t) {
        auto& monitor = *static_cast<WaylandIdleMonitor*>(data);
        wl_callback_destroy(callback);
        monitor._listed = nullptr;
        monitor._needs.ready(monitor._notifier || monitor._kwinIdle);
      }};

  static constexpr ext_idle_notification_v1_listener kNotification = {
      .idled = [](void* data, ext_idle_notification_v1*) { static_cast<Seat*>(data)->set(true); },
      .resumed = [](void* data,
                    ext_idle_notification_v1*) { static_cast<Seat*>(data)->set(false); }};

  static constexpr org_kde_kwin_idle_timeout_listener kTimeout = {
      .idle = [](void* data, org_kde_kwin_idle_timeout*) { static_cast<Seat*>(data)->set(true); },
      .resumed = [](void* data,
                    org_kde_kwin_idle_timeout*) { static_cast<Seat*>(data)->set(false); }};
};

void WaylandIdleMonitor::Seat::follow(ext_idle_notifier_v1* notifier, std::uint32_t milliseconds) {
  _notification = ext_idle_notifier_v1_get_idle_notification(notifier, milliseconds, _seat);
  ext_idle_notification_v1_add_listener(_notification, &Listeners::kNotification, this);
}

void WaylandIdleMonitor::Seat::follow(org_kde_kwin_idle* idle, std::uint32_t milliseconds) {
  _timeout = org_kde_kwin_idle_get_idle_timeout(idle, _seat, milliseconds);
  org_kde_kwin_idle_timeout_add_listener(_timeout, &Listeners::kTimeout, this);
}

Result<std::unique_ptr<WaylandIdleMonitor>> WaylandIdleMonitor::open(const char* socket) {
  wl_display* display = wl_display_connect(socket);
  if (!display) {
    return Error{std::string("the Wayland compositor does not answer: ") + std::strerror(errno)};
  }
  return std::unique_ptr<WaylandIdleMonitor>(new WaylandIdleMonitor(display));
}

WaylandIdleMonitor::WaylandIdleMonitor(wl_display* display) : _display(display) {}

WaylandIdleMonitor::~WaylandIdleMonitor() {
  _readable.reset();
  _writable.reset();
  _seats.clear();
  if (_notifier) ext_idle_notifier_v1_destroy(_notifier);
  if (_kwinIdle) org_kde_kwin_idle_destroy(_kwinIdle);
  if (_listed) wl_callback_destroy(_listed);
  if (_registry) wl_registry_destroy(_registry);
  wl_display_disconnect(_display);
}

void WaylandIdleMonitor::attach(Needs needs) {
  _needs = std::move(needs);
  const int descriptor = wl_display_get_fd(_display);
  _readable = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  _writable = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Write);
  _writable->setEnabled(false);
  QObject::connect(_readable.get(), &QSocketNotifier::activated, _readable.get(),
                   [this] { readEvents(); });
  QObject::connect(_writable.get(), &QSocketNotifier::activated, _writable.get(),
                   [this] { flush(); });
  _registry = wl_display_get_registry(_display);
  wl_registry_add_listener(_registry, &Listeners::kRegistry, this);
  _listed = wl_display_sync(_display);
  wl_callback_add_listener(_listed, &Listeners::kListed, this);
  flush();
}

void WaylandIdleMonitor::start(std::chrono::seconds delay, Events events) {
  _delay = delay;
  _events = std::move(events);
  for (const auto& seat : _seats) follow(*seat);
  flush();
}

void WaylandIdleMonitor::globalAdded(std::uint32_t name, const char* interface, std::uint32_t) {
  const auto is = [interface](const wl_interface& known) {
    return std::strcmp(interface, known.name) == 0;
  };
  if (is(wl_seat_interface)) {
    auto* seat = static_cast<wl_seat*>(wl_registry_bind(_registry, name, &wl_seat_interface, 1));
    _seats.push_back(std::make_unique<Seat>(*this, name, seat));
    if (_delay.count() == 0) return;
    follow(*_seats.back());
    update();
  } else if (is(ext_idle_notifier_v1_interface) && !_notifier) {
    _notifier = static_cast<ext_idle_notifier_v1*>(
        wl_registry_bind(_registry, name, &ext_idle_notifier_v1_interface, 1));
  } else if (is(org_kde_kwin_idle_interface) && !_kwinIdle) {
    _kwinIdle = static_cast<org_kde_kwin_idle*>(
        wl_registry_bind(_registry, name, &org_kde_kwin_idle_interface, 1));
  }
}

void WaylandIdleMonitor::globalRemoved(std::uint32_t name) {
  if (std::erase_if(_seats, [name](const auto& seat) { return seat->name() == name; }) > 0) {
    update();
  }
}

void WaylandIdleMonitor::readEvents() {
  while (wl_display_prepare_read(_display) != 0) {
    if (wl_display_dispatch_pending(_display) < 0) return lose();
  }
  if (wl_display_read_events(_display) < 0 || wl_display_dispatch_pending(_display) < 0) {
    return lose();
  }
  flush();
}

void WaylandIdleMonitor::flush() {
  if (_isLost) return;
  const bool isDone = wl_display_flush(_display) >= 0;
  if (!isDone && errno != EAGAIN) return lose();
  _writable->setEnabled(!isDone);
}

void WaylandIdleMonitor::follow(Seat& seat) {
  const auto milliseconds = static_cast<std::uint32_t>(_delay.count());
  if (_notifier) {
    seat.follow(_notifier, milliseconds);
  } else if (_kwinIdle) {
    seat.follow(_kwinIdle, milliseconds);
  }
}

void WaylandIdleMonitor::update() {
  const bool areIdle = !_seats.empty() && std::all_of(_seats.begin(), _seats.end(),
                                                      [](const auto& s) { return s->isIdle(); });
  if (std::exchange(_isIdle, areIdle) == areIdle) return;
  (areIdle ? _events.becameIdle : _events.becameActive)();
}

void WaylandIdleMonitor::lose() {
  if (std::exchange(_isLost, true)) return;
  _readable->setEnabled(false);
  _writable->setEnabled(false);
  _needs.lost("The Wayland compositor has gone");
}

}  // namespace pelmora::idle
