#pragma once

#include "shared/Result.h"

#include <cstdint>

namespace pelmora::sandbox {

struct Limits {
  std::int64_t memory = 0;      // bytes that may be mapped beyond what is mapped already
  std::int64_t handedOver = 0;  // bytes of each memory that it makes to hand over
};

/// Shuts the process off, for good: afterwards it can compute, read what it has open, make memory
/// to hand over and talk over the sockets that it has, and nothing else. It opens no file, reaches
/// no network, starts and signals no process, makes nothing executable and leaves no core behind.
/// It is to be called once, on the only thread, when all libraries and their data are loaded;
/// threads started later are shut off with it. It can still ask for the size and dates of a file
/// that it names, which the C library's own way of asking about open files does not let apart; and
/// the number of its threads is the user's limit. Errors: what the kernel refused. It has no
/// Landlock before 5.13; that layer is then left out, as the filter of system calls denies the
/// same.
[[nodiscard]] Status enterSandbox(const Limits& limits);

}  // namespace pelmora::sandbox
