#pragma once

#include "platform/FileDescriptor.h"

#include <cstdint>

namespace pelmora::sandbox {

/// How much memory this process has. Made before the process is shut off from files. Thread: one.
class MemoryUse {
 public:
  struct Bytes {
    std::int64_t mapped = 0;    // addresses that are taken, with memory behind them or not
    std::int64_t resident = 0;  // memory
  };

  MemoryUse();
  /// Zeros where it cannot be told.
  [[nodiscard]] Bytes now() const;

 private:
  platform::FileDescriptor _statm;
};

}  // namespace pelmora::sandbox
