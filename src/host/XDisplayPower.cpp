#include "host/XDisplayPower.h"

#include <poll.h>
#include <xcb/dpms.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include <cstdlib>
#include <utility>

namespace pelmora::host {

namespace {

constexpr int kPatience = 20;  // milliseconds

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

}  // namespace

void XDisplayPower::Disconnect::operator()(xcb_connection_t* connection) const {
  xcb_disconnect(connection);
}

std::unique_ptr<XDisplayPower> XDisplayPower::open() {
  Connection connection(xcb_connect(nullptr, nullptr));
  if (xcb_connection_has_error(connection.get()) != 0) return nullptr;
  const xcb_query_extension_reply_t* extension =
      xcb_get_extension_data(connection.get(), &xcb_dpms_id);
  if (extension == nullptr || extension->present == 0) return nullptr;
  const Reply<xcb_dpms_capable_reply_t> capable(
      xcb_dpms_capable_reply(connection.get(), xcb_dpms_capable(connection.get()), nullptr));
  if (!capable || capable->capable == 0) return nullptr;
  return std::unique_ptr<XDisplayPower>(new XDisplayPower(std::move(connection)));
}

XDisplayPower::XDisplayPower(Connection connection) : _connection(std::move(connection)) {}

XDisplayPower::~XDisplayPower() = default;

bool XDisplayPower::isAwake() {
  if (!_connection) return true;
  if (!_question) ask();
  if (!takeAnswer()) {
    pollfd answer{.fd = xcb_get_file_descriptor(_connection.get()), .events = POLLIN, .revents = 0};
    poll(&answer, 1, kPatience);
    takeAnswer();
  }
  if (xcb_connection_has_error(_connection.get()) != 0) {
    _connection.reset();
    _isAwake = true;
  }
  return _isAwake;
}

void XDisplayPower::ask() {
  _question = xcb_dpms_info(_connection.get()).sequence;
  xcb_flush(_connection.get());
}

bool XDisplayPower::takeAnswer() {
  void* taken = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (xcb_poll_for_reply(_connection.get(), *_question, &taken, &error) == 0) return false;
  const Reply<xcb_generic_error_t> problem(error);
  const Reply<xcb_dpms_info_reply_t> info(static_cast<xcb_dpms_info_reply_t*>(taken));
  _question.reset();
  _isAwake = !info || info->state == 0 || info->power_level == XCB_DPMS_DPMS_MODE_ON;
  return true;
}

}  // namespace pelmora::host
