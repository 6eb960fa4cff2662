#pragma once

#include "host/HostedPlace.h"
#include "host/WindowId.h"
#include "shared/Result.h"

#include <cstdint>
#include <memory>
#include <optional>

struct xcb_connection_t;

namespace pelmora::host {

/// A window of another program, watched over a connection of its own to the X server: the toolkit
/// tells neither how large such a window is nor what becomes of it, and ends the process when its
/// own connection breaks.
/// Thread: one. Units: device pixels.
class ForeignWindow {
 public:
  enum class State { open, destroyed, disconnected };

  /// The error is for the user: no X server, no such window, or none that can be drawn into.
  [[nodiscard]] static Result<std::unique_ptr<ForeignWindow>> open(WindowId id);
  /// The window that stands for the desktop: the one that a window manager keeps in the place of
  /// the root window, else that itself.
  [[nodiscard]] static Result<WindowId> root();
  ~ForeignWindow();
  ForeignWindow(const ForeignWindow&) = delete;
  ForeignWindow& operator=(const ForeignWindow&) = delete;

  [[nodiscard]] WindowId id() const { return _id; }
  /// Where it was on its screen when it was opened, with the size that it has now.
  [[nodiscard]] const PixelRect& rect() const { return _rect; }
  [[nodiscard]] State state() const { return _state; }
  [[nodiscard]] bool isRoot() const { return _isRoot; }

  /// Readable when there is news; `update` then takes it in, without waiting.
  [[nodiscard]] int descriptor() const;
  void update();

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const;
  };
  using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

  ForeignWindow(Connection connection, WindowId id);
  [[nodiscard]] static Result<Connection> connect();
  [[nodiscard]] Status examine();

  const Connection _connection;
  const WindowId _id;
  PixelRect _rect;
  State _state = State::open;
  bool _isRoot = false;
};

}  // namespace pelmora::host
