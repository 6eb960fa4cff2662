#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>

class QDBusConnection;

namespace pelmora::platform {
class Log;
}

namespace pelmora::desktop {

/// Where the session's bus is: the address that the session gives, else the user's own socket in
/// its runtime folder. "" where there is neither; none is ever started.
[[nodiscard]] std::string sessionBusAddress(const std::string& given,
                                            const std::string& runtimeFolder);

/// Names that bus in the environment, or that there is none ("disabled:"): left to itself, the
/// toolkit's library would start one that outlives the run. A program that inherits the latter
/// looks anew. For main, before it starts anything.
void neverStartSessionBus();

/// Where the system's bus is: the address that the environment gives, else the usual one.
[[nodiscard]] std::string systemBusAddress(const std::string& given);

/// The session's bus, on a thread of its own with a connection of its own: whatever waits for the
/// bus waits there, beginning with the connection.
/// Thread: any. Errors: one line in the log where the bus is missing, so that nothing posted runs,
/// and one when it goes.
class SessionBus {
 public:
  using Task = std::function<void(const QDBusConnection&)>;

  /// No bus, for a run that is not to see its session.
  SessionBus();
  /// Returns at once. `log` outlives it, and is told of the bus by `name`, which is another one's
  /// where that is meant. A QCoreApplication must be there, if an address is.
  SessionBus(const std::string& address, platform::Log& log,
             std::chrono::milliseconds patience = std::chrono::seconds(1),
             const std::string& name = "The session's bus");
  /// Waits for what was posted, but no longer than it has patience for a connection: the thread is
  /// then left to itself, and runs none of the tasks.
  ~SessionBus();
  SessionBus(const SessionBus&) = delete;
  SessionBus& operator=(const SessionBus&) = delete;

  /// Whether a thread was left waiting for a connection. A process that then exits as usual would
  /// wait with it.
  [[nodiscard]] static bool isAnyLeftToItself();

  /// Runs `task`, which must not wait for anything, on the bus's thread, after those posted before,
  /// as soon as there is a connection.
  void post(Task task);

 private:
  struct Worker;
  std::unique_ptr<Worker> _worker;  // null without an address
  std::chrono::milliseconds _patience{};
};

/// A T that is made, called and destroyed on the bus's thread; where there is no bus it is never
/// made. Thread: any. The bus outlives it.
template <typename T>
class OnBus {
 public:
  template <typename Make>
  OnBus(SessionBus& bus, Make make) : _bus(bus) {
    _bus.post([object = _object, make = std::move(make)](const QDBusConnection& connection) {
      *object = make(connection);
    });
  }
  ~OnBus() {
    _bus.post([object = _object](const QDBusConnection&) { object->reset(); });
  }
  OnBus(const OnBus&) = delete;
  OnBus& operator=(const OnBus&) = delete;

  /// Calls `task` with the object on the bus's thread, after the calls before.
  void call(std::function<void(T&)> task) {
    _bus.post([object = _object, task = std::move(task)](const QDBusConnection&) {
      if (*object) task(**object);
    });
  }

 private:
  SessionBus& _bus;
  std::shared_ptr<std::unique_ptr<T>> _object = std::make_shared<std::unique_ptr<T>>();
};

}  // namespace pelmora::desktop
