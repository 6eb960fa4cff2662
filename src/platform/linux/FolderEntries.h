#pragma once

#include <dirent.h>

#include <cerrno>
#include <cstddef>

namespace pelmora::platform {

enum class Reading { more, ended, failed };

/// Reads the next block of entries of the folder open as `descriptor` and calls `visit` with each,
/// "." and ".." included. After `failed`, `errno` tells why. Thread: any.
template <typename Visit>
[[nodiscard]] Reading readSomeEntries(int descriptor, const Visit& visit) {
  constexpr std::size_t kBlockBytes = 64 * 1024;
  alignas(dirent64) char block[kBlockBytes];
  ssize_t got = 0;
  do {
    got = ::getdents64(descriptor, block, sizeof block);
  } while (got < 0 && errno == EINTR);
  if (got <= 0) return got == 0 ? Reading::ended : Reading::failed;
  for (ssize_t offset = 0; offset < got;) {
    const auto* entry = reinterpret_cast<const dirent64*>(block + offset);
    visit(*entry);
    offset += entry->d_reclen;
  }
  return Reading::more;
}

}  // namespace pelmora::platform
