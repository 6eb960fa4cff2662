#include "host/ForeignWindow.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::host {

namespace {

constexpr std::string_view kVirtualRoot = "__SWM_VROOT";
constexpr std::uint8_t kEventKind = 0x7f;  // without the mark of events that clients have sent

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

std::string hexadecimal(WindowId id) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%x", id);
  return text.data();
}

xcb_window_t rootOf(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

/// The window that a property of `window` names; 0 when there is none.
WindowId windowIn(xcb_connection_t* connection, xcb_get_property_cookie_t cookie) {
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
  if (!reply || reply->type != XCB_ATOM_WINDOW || reply->format != 32) return 0;
  WindowId id = 0;
  if (xcb_get_property_value_length(reply.get()) < static_cast<int>(sizeof id)) return 0;
  std::memcpy(&id, xcb_get_property_value(reply.get()), sizeof id);
  return id;
}

WindowId virtualRoot(xcb_connection_t* connection, xcb_window_t root) {
  const auto atomCookie = xcb_intern_atom(
      connection, 1, static_cast<std::uint16_t>(kVirtualRoot.size()), kVirtualRoot.data());
  const auto treeCookie = xcb_query_tree(connection, root);
  const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(connection, atomCookie, nullptr));
  const Reply<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(connection, treeCookie, nullptr));
  if (!atom || atom->atom == XCB_ATOM_NONE || !tree) return 0;
  const xcb_window_t* children = xcb_query_tree_children(tree.get());
  std::vector<xcb_get_property_cookie_t> cookies;
  for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
    cookies.push_back(
        xcb_get_property(connection, 0, children[i], atom->atom, XCB_ATOM_WINDOW, 0, 1));
  }
  WindowId found = 0;
  for (const auto& cookie : cookies) found = std::max(found, windowIn(connection, cookie));
  return found;
}

}  // namespace

void ForeignWindow::Disconnect::operator()(xcb_connection_t* connection) const {
  xcb_disconnect(connection);
}

Result<ForeignWindow::Connection> ForeignWindow::connect() {
  int screen = 0;
  Connection connection(xcb_connect(nullptr, &screen));
  const bool answers = xcb_connection_has_error(connection.get()) == 0 &&
                       xcb_setup_roots_length(xcb_get_setup(connection.get())) > 0;
  if (!answers) return Error{"there is no X server that answers, so there is no window of it"};
  return connection;
}

Result<std::unique_ptr<ForeignWindow>> ForeignWindow::open(WindowId id) {
  Result<Connection> connection = connect();
  if (!connection) return connection.error();
  std::unique_ptr<ForeignWindow> window(new ForeignWindow(std::move(connection).value(), id));
  if (const Status examined = window->examine(); !examined) return examined.error();
  return window;
}

Result<WindowId> ForeignWindow::root() {
  Result<Connection> connection = connect();
  if (!connection) return connection.error();
  const WindowId real = rootOf(connection->get());
  const WindowId found = virtualRoot(connection->get(), real);
  return found != 0 ? found : real;
}

ForeignWindow::ForeignWindow(Connection connection, WindowId id)
    : _connection(std::move(connection)), _id(id) {}

ForeignWindow::~ForeignWindow() = default;

/// Asks for news before asking for facts, so that no change falls between the two.
Status ForeignWindow::examine() {
  xcb_connection_t* connection = _connection.get();
  const std::uint32_t news = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  const auto selected =
      xcb_change_window_attributes_checked(connection, _id, XCB_CW_EVENT_MASK, &news);
  const auto attributesCookie = xcb_get_window_attributes(connection, _id);
  const auto geometryCookie = xcb_get_geometry(connection, _id);
  const Reply<xcb_generic_error_t> problem(xcb_request_check(connection, selected));
  const Reply<xcb_get_window_attributes_reply_t> attributes(
      xcb_get_window_attributes_reply(connection, attributesCookie, nullptr));
  const Reply<xcb_get_geometry_reply_t> geometry(
      xcb_get_geometry_reply(connection, geometryCookie, nullptr));
  if (problem || !attributes || !geometry) {
    return Error{"there is no window " + hexadecimal(_id)};
  }
  if (attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
    return Error{"nothing can be drawn into the window " + hexadecimal(_id)};
  }
  const Reply<xcb_translate_coordinates_reply_t> place(xcb_translate_coordinates_reply(
      connection, xcb_translate_coordinates(connection, _id, geometry->root, 0, 0), nullptr));
  _isRoot = geometry->root == _id;
  _rect = {place ? place->dst_x : 0, place ? place->dst_y : 0, geometry->width, geometry->height};
  return Done{};
}

int ForeignWindow::descriptor() const { return xcb_get_file_descriptor(_connection.get()); }

void ForeignWindow::update() {
  while (Reply<xcb_generic_event_t> event{xcb_poll_for_event(_connection.get())}) {
    const int kind = event->response_type & kEventKind;
    if (kind == XCB_DESTROY_NOTIFY) {
      const auto* news = reinterpret_cast<const xcb_destroy_notify_event_t*>(event.get());
      if (news->window == _id) _state = State::destroyed;
    }
    if (kind == XCB_CONFIGURE_NOTIFY) {
      const auto* news = reinterpret_cast<const xcb_configure_notify_event_t*>(event.get());
      if (news->window != _id) continue;
      _rect.width = news->width;
      _rect.height = news->height;
    }
  }
  const bool isBroken = xcb_connection_has_error(_connection.get()) != 0;
  if (isBroken && _state == State::open) _state = State::disconnected;
}

}  // namespace pelmora::host
