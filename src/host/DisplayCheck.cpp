#include "host/DisplayCheck.h"

#include <QCoreApplication>
#include <QDir>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace pelmora::host {

namespace {

std::string_view environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

/// Which of the two servers Qt would turn to.
struct Servers {
  bool wayland = false;
  bool x11 = false;
  bool none = false;  // it was told to use a platform that needs neither
};

Servers serversOf(std::string_view platforms) {
  Servers servers;
  while (!platforms.empty()) {
    const std::string_view name = platforms.substr(0, platforms.find(';'));
    platforms.remove_prefix(std::min(platforms.size(), name.size() + 1));
    if (name.starts_with("wayland")) {
      servers.wayland = true;
    } else if (name.starts_with("xcb")) {
      servers.x11 = true;
    } else if (!name.empty()) {
      servers.none = true;
    }
  }
  return servers;
}

bool isWaylandSession() {
  return !environment("WAYLAND_DISPLAY").empty() || !environment("WAYLAND_SOCKET").empty() ||
         environment("XDG_SESSION_TYPE") == "wayland";
}

Servers serversToTry() {
  const Servers told = serversOf(environment("QT_QPA_PLATFORM"));
  if (told.wayland || told.x11 || told.none) return told;
  return {.wayland = isWaylandSession(), .x11 = true};
}

bool waylandAnswers() {
  // A connection that was made already, which only one can use.
  if (!environment("WAYLAND_SOCKET").empty()) return true;
  std::string_view name = environment("WAYLAND_DISPLAY");
  if (name.empty()) name = "wayland-0";
  std::string path(name);
  if (path.front() != '/') path = std::string(environment("XDG_RUNTIME_DIR")) + "/" + path;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  // One that takes no more connections does not answer: it is not waited for.
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (descriptor < 0) return false;
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  const bool answers = connect(descriptor, generic, sizeof address) == 0;
  close(descriptor);
  return answers;
}

bool hasWaylandPlugin() {
  const QStringList folders = QCoreApplication::libraryPaths();
  return std::any_of(folders.begin(), folders.end(), [](const QString& folder) {
    return !QDir(folder + "/platforms").entryList({"libqwayland*"}, QDir::Files).isEmpty();
  });
}

}  // namespace

bool xServerAnswers() {
  if (environment("DISPLAY").empty()) return false;
  xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
  const bool answers = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return answers;
}

bool compositorAnswers() { return isWaylandSession() && waylandAnswers(); }

void preferWayland() {
  if (!environment("QT_QPA_PLATFORM").empty() || !serversToTry().wayland) return;
  if (waylandAnswers() && hasWaylandPlugin()) qputenv("QT_QPA_PLATFORM", "wayland;xcb");
}

Status checkDisplay() {
  const Servers servers = serversToTry();
  if (servers.none || (servers.x11 && xServerAnswers())) return Done{};
  if (servers.wayland && waylandAnswers()) {
    if (hasWaylandPlugin()) return Done{};
    return Error{"Qt's plug-in for Wayland is not installed (Debian has it in qt6-wayland)"};
  }
  if (environment("WAYLAND_DISPLAY").empty() && environment("DISPLAY").empty()) {
    return Error{"there is no display; 'pelmora render' makes pictures without one"};
  }
  return Error{"the display does not answer; 'pelmora render' makes pictures without one"};
}

}  // namespace pelmora::host
