#include "sandbox/MemoryUse.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <charconv>

namespace pelmora::sandbox {

MemoryUse::MemoryUse() : _statm(open("/proc/self/statm", O_RDONLY | O_CLOEXEC)) {}

MemoryUse::Bytes MemoryUse::now() const {
  std::array<char, 128> text{};
  const ssize_t length = pread(_statm.get(), text.data(), text.size(), 0);
  if (length <= 0) return {};
  const char* const end = text.data() + length;
  Bytes pages;
  const auto [space, error] = std::from_chars(text.data(), end, pages.mapped);
  if (error != std::errc() || space == end) return {};
  std::from_chars(space + 1, end, pages.resident);
  const std::int64_t pageSize = sysconf(_SC_PAGESIZE);
  return {pages.mapped * pageSize, pages.resident * pageSize};
}

}  // namespace pelmora::sandbox
