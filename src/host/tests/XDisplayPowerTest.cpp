#include "host/XDisplayPower.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace pelmora::host {

namespace {

using Bytes = std::vector<std::uint8_t>;

void put16(Bytes& bytes, std::size_t at, unsigned value) {
  bytes[at] = static_cast<std::uint8_t>(value & 0xffU);
  bytes[at + 1] = static_cast<std::uint8_t>(value >> 8U);
}

/// As much of an X server as is asked for the power of its displays. The virtual one that other
/// tests use cannot switch any off.
class PowerServer {
 public:
  struct State {
    std::atomic<bool> hasPower = true;
    std::atomic<bool> isCapable = true;
    std::atomic<bool> isEnabled = true;
    std::atomic<unsigned> level = 0;
    std::atomic<bool> isSilent = false;
  };

  PowerServer() {
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* generic = reinterpret_cast<sockaddr*>(&name);
    socklen_t size = sizeof name;
    if (bind(_listening, generic, size) != 0 || listen(_listening, 1) != 0 ||
        getsockname(_listening, generic, &size) != 0) {
      throw std::runtime_error("no port for the server");
    }
    if (const char* display = std::getenv("DISPLAY")) _display = display;
    setenv("DISPLAY", ("127.0.0.1:" + std::to_string(ntohs(name.sin_port) - kFirstPort)).c_str(),
           1);
    _thread = std::thread([this] { serve(); });
  }
  ~PowerServer() {
    setenv("DISPLAY", _display.c_str(), 1);
    goAway();
  }
  PowerServer(const PowerServer&) = delete;
  PowerServer& operator=(const PowerServer&) = delete;

  void goAway() {
    if (!_thread.joinable()) return;
    shutdown(_listening, SHUT_RDWR);
    const int client = _client;
    if (client >= 0) shutdown(client, SHUT_RDWR);
    _thread.join();
    if (client >= 0) close(client);
    close(_listening);
  }

  State state;

 private:
  static constexpr int kFirstPort = 6000;  // of display 0
  static constexpr std::uint8_t kQueryExtension = 98;
  static constexpr std::uint8_t kPower = 200;  // the extension's number
  static constexpr std::uint8_t kCapable = 1;
  static constexpr std::uint8_t kInfo = 7;

  bool receive(Bytes& bytes) const {
    return bytes.empty() || recv(_client, bytes.data(), bytes.size(), MSG_WAITALL) ==
                                static_cast<ssize_t>(bytes.size());
  }
  void reply(const Bytes& bytes) const {
    static_cast<void>(send(_client, bytes.data(), bytes.size(), MSG_NOSIGNAL));
  }

  void serve() {
    _client = accept(_listening, nullptr, nullptr);
    Bytes hello(12);
    if (_client < 0 || !receive(hello)) return;
    const auto padded = [&](std::size_t at) {
      return (hello[at] + 256U * hello[at + 1] + 3U) & ~3U;
    };
    Bytes authority(padded(6) + padded(8));
    if (!receive(authority)) return;
    // Success, protocol 11.0, and a screen without depths.
    Bytes setup(8 + 32 + 40);
    setup[0] = 1;
    put16(setup, 2, 11);
    put16(setup, 6, 32 / 4 + 40 / 4);
    put16(setup, 26, 0xffff);  // the longest request
    setup[28] = 1;             // screens
    reply(setup);
    for (Bytes head(4); receive(head);) {
      Bytes rest(4U * (head[2] + 256U * head[3]) - 4U);
      if (!receive(rest)) return;
      ++_sequence;
      answer(head, rest);
    }
  }

  void answer(const Bytes& head, const Bytes& rest) {
    Bytes told(32);
    told[0] = 1;
    put16(told, 2, _sequence);
    if (head[0] == kQueryExtension) {
      const std::string name(rest.begin() + 4, rest.begin() + 4 + rest[0]);
      told[8] = name == "DPMS" && state.hasPower ? 1 : 0;
      told[9] = kPower;
    } else if (head[0] == kPower && head[1] == kCapable) {
      told[8] = state.isCapable ? 1 : 0;
    } else if (head[0] == kPower && head[1] == kInfo) {
      if (state.isSilent) return;
      put16(told, 8, state.level);
      told[10] = state.isEnabled ? 1 : 0;
    } else if (head[0] != 43) {
      return;  // only of the input's focus there is an answer beside
    }
    reply(told);
  }

  std::string _display;
  int _listening = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  std::atomic<int> _client = -1;
  unsigned _sequence = 0;  // the thread's
  std::thread _thread;
};

}  // namespace

TEST(XDisplayPower, knowsWhetherTheDisplaysAreOn) {
  PowerServer server;
  const auto power = XDisplayPower::open();
  ASSERT_TRUE(power);
  EXPECT_TRUE(power->isAwake());
  for (const unsigned level : {1U, 2U, 3U}) {  // standby, suspended, off
    server.state.level = level;
    while (power->isAwake()) continue;  // on a busy machine the answer may be the last
  }
  server.state.isEnabled = false;
  while (!power->isAwake()) continue;
  server.state.level = 0;
  server.state.isEnabled = true;
  EXPECT_TRUE(power->isAwake());
}

TEST(XDisplayPower, isThereOnlyWhereDisplaysCanBeSwitchedOff) {
  {
    PowerServer without;
    without.state.hasPower = false;
    EXPECT_FALSE(XDisplayPower::open());
  }
  PowerServer incapable;
  incapable.state.isCapable = false;
  EXPECT_FALSE(XDisplayPower::open());
  incapable.goAway();
  EXPECT_FALSE(XDisplayPower::open());
}

TEST(XDisplayPower, doesNotWaitForAServerThatHangs) {
  PowerServer server;
  const auto power = XDisplayPower::open();
  ASSERT_TRUE(power);
  server.state.level = 3;
  while (power->isAwake()) continue;
  server.state.isSilent = true;
  for (int i = 0; i < 2; ++i) EXPECT_FALSE(power->isAwake());
}

TEST(XDisplayPower, takesDisplaysForOnOnceTheServerHasGone) {
  PowerServer server;
  const auto power = XDisplayPower::open();
  ASSERT_TRUE(power);
  server.state.level = 3;
  while (power->isAwake()) continue;
  server.goAway();
  while (!power->isAwake()) continue;
  EXPECT_TRUE(power->isAwake());
}

}  // namespace pelmora::host
