#pragma once

#include "host/DisplayPower.h"

#include <memory>
#include <optional>

struct xcb_connection_t;

namespace pelmora::host {

/// What an X server says of the power of its displays (DPMS), asked over a connection of its own.
/// Thread: one. Errors: while it does not answer its last answer holds, and once it has gone the
/// displays count as on.
class XDisplayPower : public DisplayPower {
 public:
  /// The server that DISPLAY names; null where it is missing, or cannot switch its displays off.
  [[nodiscard]] static std::unique_ptr<XDisplayPower> open();
  ~XDisplayPower() override;

  [[nodiscard]] bool isAwake() override;

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const;
  };
  using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

  explicit XDisplayPower(Connection connection);

  void ask();
  bool takeAnswer();

  Connection _connection;
  std::optional<unsigned> _question;  // that is not answered yet
  bool _isAwake = true;
};

}  // namespace pelmora::host
