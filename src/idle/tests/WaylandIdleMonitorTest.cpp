#include "idle/WaylandIdleMonitor.h"

#include "ext-idle-notify-v1-server-protocol.h"
#include "idle-server-protocol.h"
#include "platform/fake/TemporaryFolder.h"

#include <QCoreApplication>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <wayland-server.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::idle {

namespace {

/// A compositor with seats and one protocol of idleness, or none. Thread: one, the client's.
class FakeCompositor {
 public:
  enum class Protocol { none, standard, kwin };

  FakeCompositor(const std::string& socket, Protocol protocol) {
    const int listening = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    socket.copy(name.sun_path, sizeof name.sun_path - 1);
    bind(listening, reinterpret_cast<const sockaddr*>(&name), sizeof name);
    listen(listening, 1);
    wl_display_add_socket_fd(_display, listening);
    if (protocol == Protocol::standard) {
      wl_global_create(_display, &ext_idle_notifier_v1_interface, 1, this, bindNotifier);
    } else if (protocol == Protocol::kwin) {
      wl_global_create(_display, &org_kde_kwin_idle_interface, 1, this, bindKwin);
    }
  }
  ~FakeCompositor() { end(); }
  FakeCompositor(const FakeCompositor&) = delete;
  FakeCompositor& operator=(const FakeCompositor&) = delete;

  wl_global* addSeat() {
    return wl_global_create(_display, &wl_seat_interface, 1, this,
                            [](wl_client* client, void*, std::uint32_t version, std::uint32_t id) {
                              wl_resource_create(client, &wl_seat_interface,
                                                 static_cast<int>(version), id);
                            });
  }
  void step() {
    if (!_display) return;
    wl_event_loop_dispatch(wl_display_get_event_loop(_display), 0);
    wl_display_flush_clients(_display);
  }
  void setIdle(std::size_t notification, bool isIdle) {
    (isIdle ? ext_idle_notification_v1_send_idled
            : ext_idle_notification_v1_send_resumed)(notifications.at(notification));
  }
  /// Hangs up.
  void end() {
    if (!_display) return;
    wl_display_destroy_clients(_display);
    wl_display_destroy(_display);
    _display = nullptr;
  }

  std::vector<wl_resource*> notifications;  // in the order in which they were asked for
  std::vector<std::uint32_t> timeouts;

 private:
  static FakeCompositor& of(wl_resource* resource) {
    return *static_cast<FakeCompositor*>(wl_resource_get_user_data(resource));
  }
  static void destroy(wl_client*, wl_resource* resource) { wl_resource_destroy(resource); }
  static void notify(wl_client* client, wl_resource* notifier, std::uint32_t id,
                     std::uint32_t timeout, wl_resource*) {
    static const struct ext_idle_notification_v1_interface calls = {.destroy = destroy};
    add(client, notifier, &ext_idle_notification_v1_interface, &calls, id, timeout);
  }
  static void notifyKwin(wl_client* client, wl_resource* idle, std::uint32_t id, wl_resource*,
                         std::uint32_t timeout) {
    static const struct org_kde_kwin_idle_timeout_interface calls = {
        .release = destroy, .simulate_user_activity = [](wl_client*, wl_resource*) {}};
    add(client, idle, &org_kde_kwin_idle_timeout_interface, &calls, id, timeout);
  }
  static void add(wl_client* client, wl_resource* parent, const wl_interface* interface,
                  const void* calls, std::uint32_t id, std::uint32_t timeout) {
    wl_resource* made = wl_resource_create(client, interface, 1, id);
    wl_resource_set_implementation(made, calls, nullptr, nullptr);
    of(parent).notifications.push_back(made);
    of(parent).timeouts.push_back(timeout);
  }
  static void bindNotifier(wl_client* client, void* data, std::uint32_t, std::uint32_t id) {
    static const struct ext_idle_notifier_v1_interface calls = {.destroy = destroy,
                                                                .get_idle_notification = notify};
    wl_resource* made = wl_resource_create(client, &ext_idle_notifier_v1_interface, 1, id);
    wl_resource_set_implementation(made, &calls, data, nullptr);
  }
  static void bindKwin(wl_client* client, void* data, std::uint32_t, std::uint32_t id) {
    static const struct org_kde_kwin_idle_interface calls = {.get_idle_timeout = notifyKwin};
    wl_resource* made = wl_resource_create(client, &org_kde_kwin_idle_interface, 1, id);
    wl_resource_set_implementation(made, &calls, data, nullptr);
  }

  wl_display* _display = wl_display_create();
};

class WaylandIdleMonitorTest : public testing::Test {
 protected:
  void open(FakeCompositor::Protocol protocol) {
    compositor = std::make_unique<FakeCompositor>(socket, protocol);
    monitor = std::move(*WaylandIdleMonitor::open(socket.c_str()));
    monitor->attach({[this](bool tells) { ready = tells; },
                     [this](const std::string& why) { lost.push_back(why); }});
  }
  void openAndStart(FakeCompositor::Protocol protocol, int seats = 1) {
    compositor = std::make_unique<FakeCompositor>(socket, protocol);
    for (int i = 0; i < seats; ++i) globals.push_back(compositor->addSeat());
    monitor = std::move(*WaylandIdleMonitor::open(socket.c_str()));
    monitor->attach({[this](bool tells) { ready = tells; },
                     [this](const std::string& why) { lost.push_back(why); }});
    waitUntil([this] { return ready.has_value(); });
    EXPECT_TRUE(*ready);
    monitor->start(std::chrono::seconds(3), {[this] { ++idles; }, [this] { ++actives; }});
    waitUntil([&] { return compositor->notifications.size() == globals.size(); });
  }
  void waitUntil(const std::function<bool()>& holds) {
    while (!holds()) step();
  }
  void step() {
    compositor->step();
    QCoreApplication::processEvents();
  }
  /// Until what was sent has arrived.
  void settle() {
    for (int i = 0; i < 20; ++i) step();
  }

  char word[2] = "t";
  char* words[2] = {word, nullptr};
  int count = 1;
  QCoreApplication application{count, words};
  platform::TemporaryFolder folder;
  const std::string socket = folder.path().bytes() + "/wayland";
  std::unique_ptr<FakeCompositor> compositor;
  std::vector<wl_global*> globals;
  std::optional<bool> ready;
  std::vector<std::string> lost;
  int idles = 0;
  int actives = 0;
  std::unique_ptr<WaylandIdleMonitor> monitor;
};

}  // namespace

TEST_F(WaylandIdleMonitorTest, tellsOfIdlenessAndOfActivityInTurns) {
  openAndStart(FakeCompositor::Protocol::standard);
  EXPECT_EQ(compositor->timeouts[0], 3000U);
  for (int turn = 1; turn <= 2; ++turn) {
    compositor->setIdle(0, true);
    waitUntil([&] { return idles == turn; });
    compositor->setIdle(0, false);
    waitUntil([&] { return actives == turn; });
  }
}

TEST_F(WaylandIdleMonitorTest, understandsTheOlderProtocolToo) {
  openAndStart(FakeCompositor::Protocol::kwin);
  EXPECT_EQ(compositor->timeouts[0], 3000U);
  org_kde_kwin_idle_timeout_send_idle(compositor->notifications[0]);
  waitUntil([&] { return idles == 1; });
  org_kde_kwin_idle_timeout_send_resumed(compositor->notifications[0]);
  waitUntil([&] { return actives == 1; });
}

TEST_F(WaylandIdleMonitorTest, countsTheUserAsIdleWhenAllSeatsAre) {
  openAndStart(FakeCompositor::Protocol::standard, 2);
  compositor->setIdle(0, true);
  settle();
  EXPECT_EQ(idles, 0);
  compositor->setIdle(1, true);
  waitUntil([&] { return idles == 1; });
  compositor->setIdle(0, false);
  waitUntil([&] { return actives == 1; });
}

TEST_F(WaylandIdleMonitorTest, followsSeatsThatComeAndGo) {
  openAndStart(FakeCompositor::Protocol::standard);
  compositor->setIdle(0, true);
  waitUntil([&] { return idles == 1; });
  wl_global* second = compositor->addSeat();
  waitUntil([&] { return actives == 1; });
  wl_global_remove(second);
  waitUntil([&] { return idles == 2; });
  wl_global_remove(globals[0]);
  waitUntil([&] { return actives == 2; });
}

TEST_F(WaylandIdleMonitorTest, saysThatACompositorDoesNotTellOfIdleness) {
  open(FakeCompositor::Protocol::none);
  waitUntil([this] { return ready.has_value(); });
  EXPECT_FALSE(*ready);
}

TEST_F(WaylandIdleMonitorTest, tellsOnceThatTheCompositorHasGone) {
  openAndStart(FakeCompositor::Protocol::standard);
  compositor->end();
  waitUntil([this] { return !lost.empty(); });
  settle();
  EXPECT_EQ(lost, std::vector<std::string>{"The Wayland compositor has gone"});
}

TEST_F(WaylandIdleMonitorTest, livesWithACompositorThatSpeaksNonsense) {
  openAndStart(FakeCompositor::Protocol::standard);
  compositor->setIdle(0, true);
  compositor->setIdle(0, true);
  waitUntil([this] { return idles > 0; });
  settle();
  EXPECT_EQ(idles, 1);
  wl_resource_post_error(compositor->notifications[0], 4711, "nonsense");
  waitUntil([this] { return !lost.empty(); });
  EXPECT_EQ(actives, 0);
}

TEST_F(WaylandIdleMonitorTest, saysThatNobodyAnswers) {
  const auto opened = WaylandIdleMonitor::open(socket.c_str());
  ASSERT_FALSE(opened);
  EXPECT_EQ(opened.error().message.find("the Wayland compositor does not answer: "), 0U);
}

}  // namespace pelmora::idle
