#pragma once

#include <functional>
#include <string_view>

namespace pelmora::host {

/// Ends the process in order when the window system goes away: Qt would end it on the spot, with
/// nothing but a warning ahead. The given work is done when that is heard, then the process exits
/// with a failure. One at a time may exist. Thread: made and destroyed on the GUI thread; the work
/// is done on whichever thread finds the connection broken.
class ConnectionLoss {
 public:
  explicit ConnectionLoss(std::function<void()> lastWork);
  ~ConnectionLoss();
  ConnectionLoss(const ConnectionLoss&) = delete;
  ConnectionLoss& operator=(const ConnectionLoss&) = delete;
};

/// Whether a warning of Qt's says that it is about to end the process, the connection being broken.
[[nodiscard]] bool tellsOfConnectionLoss(std::string_view warning);

}  // namespace pelmora::host
