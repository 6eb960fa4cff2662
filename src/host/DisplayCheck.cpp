#include "host/DisplayCheck.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>
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

/// A platform that Qt was told to use and that needs neither server.
bool usesAnotherPlatform() {
  const std::string_view platform = environment("QT_QPA_PLATFORM");
  return !platform.empty() && !platform.starts_with("xcb") && !platform.starts_with("wayland");
}

}  // namespace

bool compositorAnswers() {
  const std::string_view name = environment("WAYLAND_DISPLAY");
  if (name.empty()) return false;
  std::string path(name);
  if (path.front() != '/') path = std::string(environment("XDG_RUNTIME_DIR")) + "/" + path;
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (descriptor < 0) return false;
  const auto* generic = reinterpret_cast<const sockaddr*>(&address);
  const bool answers = connect(descriptor, generic, sizeof address) == 0;
  close(descriptor);
  return answers;
}

bool xServerAnswers() {
  if (environment("DISPLAY").empty()) return false;
  xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
  const bool answers = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return answers;
}

Status checkDisplay() {
  if (usesAnotherPlatform() || compositorAnswers() || xServerAnswers()) return Done{};
  if (environment("WAYLAND_DISPLAY").empty() && environment("DISPLAY").empty()) {
    return Error{"there is no display; 'pelmora render' makes pictures without one"};
  }
  return Error{"the display does not answer; 'pelmora render' makes pictures without one"};
}

}  // namespace pelmora::host
