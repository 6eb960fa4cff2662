#pragma once

#include "platform/FileDescriptor.h"

#include <chrono>

namespace pelmora::platform {

/// A moment until which is waited, once, whatever interrupts the waiting: a timer of the kernel.
/// Thread: one, but for `endNow`. Errors: where the system has no timer left, it is over at once.
class Deadline {
 public:
  explicit Deadline(std::chrono::milliseconds fromNow);

  /// Waits until something can be read from the descriptor, or its other end is closed. False when
  /// the deadline is over before.
  [[nodiscard]] bool waitFor(int descriptor) const;
  [[nodiscard]] bool isOver() const;
  /// Makes now the moment, also for one who waits already. Thread: any.
  void endNow() const;

 private:
  FileDescriptor _timer;
};

}  // namespace pelmora::platform
