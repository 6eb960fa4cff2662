#include "desktop/SessionBus.h"
#include "host/Command.h"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>

namespace {

// Left to itself, the allocator keeps for ever what large blocks once took: pictures, and whatever
// others send. A saver runs for weeks, and large blocks are rare enough in it to go back at once.
constexpr int kLargeBlock = 256 << 10;  // bytes

}  // namespace

int main(int argc, char** argv) {
  mallopt(M_MMAP_THRESHOLD, kLargeBlock);
  mallopt(M_TRIM_THRESHOLD, 4 * kLargeBlock);
  const auto status =
      static_cast<int>(pelmora::host::runProgram({argv, static_cast<std::size_t>(argc)}));
  if (pelmora::desktop::SessionBus::isAnyLeftToItself()) {
    std::fflush(nullptr);
    std::_Exit(status);
  }
  return status;
}
