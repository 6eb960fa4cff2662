#include "host/MemoryShortage.h"

#include <unistd.h>

#include <cstdlib>
#include <new>
#include <string_view>

namespace pelmora::host {

namespace {

constexpr std::string_view kLine = "Pelmora: Ended, as there is no memory left\n";

/// Without memory of its own: not by the system's log, nor by buffered output.
void end() {
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, kLine.data(), kLine.size());
  std::_Exit(EXIT_FAILURE);
}

}  // namespace

void endWhenMemoryRunsOut() { std::set_new_handler(end); }

}  // namespace pelmora::host
