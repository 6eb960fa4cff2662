#include "desktop/SessionBus.h"

#include "desktop/BusSignal.h"
#include "platform/Log.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDeadlineTimer>
#include <QObject>
#include <QThread>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>
#include <utility>

namespace pelmora::desktop {

namespace {

std::atomic<bool> anyIsWaiting = false;  // a thread that was left to itself

constexpr const char* kVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* kNoBus = "disabled:";  // no kind of address that there is

std::string variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

/// As a part of an address.
std::string escaped(const std::string& path) {
  std::string text;
  for (const char byte : path) {
    const auto number = static_cast<unsigned char>(byte);
    if (std::isalnum(number) != 0 || std::strchr("-_/.*", byte) != nullptr) {
      text += byte;
    } else {
      std::array<char, 4> code{};
      std::snprintf(code.data(), code.size(), "%%%02x", number);
      text += code.data();
    }
  }
  return text;
}

}  // namespace

std::string sessionBusAddress(const std::string& given, const std::string& runtimeFolder) {
  if (!given.empty() && given != kNoBus) return given;
  if (runtimeFolder.empty()) return {};
  const std::string socket = runtimeFolder + "/bus";
  struct stat facts {};
  if (stat(socket.c_str(), &facts) != 0 || !S_ISSOCK(facts.st_mode)) return {};
  if (facts.st_uid != getuid()) return {};
  return "unix:path=" + escaped(socket);
}

void neverStartSessionBus() {
  const std::string address = sessionBusAddress(variable(kVariable), variable("XDG_RUNTIME_DIR"));
  setenv(kVariable, address.empty() ? kNoBus : address.c_str(), 1);
}

std::string systemBusAddress(const std::string& given) {
  return given.empty() ? "unix:path=/run/dbus/system_bus_socket" : given;
}

struct SessionBus::Worker {
  void connect(const std::string& address, const std::string& busName, platform::Log& log);
  void watchForEnd(const std::string& busName, platform::Log& log);
  void run(const Task& task) const;
  void disconnect();
  void end();

  QThread thread;
  QObject context;  // lives on the thread
  std::mutex mutex;
  bool isConnecting = true;  // under the mutex
  bool isAbandoned = false;  // under the mutex; only while it is connecting
  // On the thread:
  std::optional<QDBusConnection> connection;
  std::optional<BusSignal> loss;
};

void SessionBus::Worker::connect(const std::string& address, const std::string& busName,
                                 platform::Log& log) {
  const QString name = "pelmora-" + QString::number(reinterpret_cast<quintptr>(this), 16);
  connection = QDBusConnection::connectToBus(QString::fromStdString(address), name);
  const bool isConnected = connection->isConnected();
  const std::string why = connection->lastError().message().toStdString();
  if (isConnected) watchForEnd(busName, log);  // which may wait too
  const std::lock_guard lock(mutex);
  isConnecting = false;
  if (isConnected && !isAbandoned) return;
  disconnect();
  if (!isAbandoned) log.print("Pelmora: %s cannot be reached: %s", busName.c_str(), why.c_str());
}

void SessionBus::Worker::watchForEnd(const std::string& busName, platform::Log& log) {
  loss.emplace(*connection, BusSignal::endOfConnection(), [busName, &log](const QDBusMessage&) {
    log.print("Pelmora: %s has gone", busName.c_str());
  });
}

void SessionBus::Worker::run(const Task& task) const {
  if (connection) task(*connection);
}

void SessionBus::Worker::disconnect() {
  if (!connection) return;
  const QString name = connection->name();
  loss.reset();
  connection.reset();
  QDBusConnection::disconnectFromBus(name);
}

void SessionBus::Worker::end() {
  disconnect();
  thread.quit();
}

SessionBus::SessionBus() = default;

SessionBus::SessionBus(const std::string& address, platform::Log& log,
                       std::chrono::milliseconds patience, const std::string& name)
    : _patience(patience) {
  if (address.empty()) {
    log.write("Pelmora: There is no session bus: music players are not seen.");
    return;
  }
  _worker = std::make_unique<Worker>();
  Worker* const worker = _worker.get();
  worker->thread.setObjectName("session bus");
  worker->context.moveToThread(&worker->thread);
  worker->thread.start();
  QMetaObject::invokeMethod(
      &worker->context, [worker, address, name, &log] { worker->connect(address, name, log); },
      Qt::QueuedConnection);
}

SessionBus::~SessionBus() {
  if (!_worker) return;
  Worker* const worker = _worker.get();
  QMetaObject::invokeMethod(
      &worker->context, [worker] { worker->end(); }, Qt::QueuedConnection);
  if (worker->thread.wait(QDeadlineTimer(_patience))) return;
  {
    const std::lock_guard lock(worker->mutex);
    worker->isAbandoned = worker->isConnecting;
    if (worker->isAbandoned) {
      anyIsWaiting = true;
      static_cast<void>(_worker.release());  // a thread that runs cannot be destroyed
      return;
    }
  }
  worker->thread.wait();  // for what is to be done on it, which never waits
}

bool SessionBus::isAnyLeftToItself() { return anyIsWaiting; }

void SessionBus::post(Task task) {
  if (!_worker) return;
  Worker* const worker = _worker.get();
  QMetaObject::invokeMethod(
      &worker->context, [worker, task = std::move(task)] { worker->run(task); },
      Qt::QueuedConnection);
}

}  // namespace pelmora::desktop
