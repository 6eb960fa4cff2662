#include "inspector/InspectServer.h"
#include "inspector/MetadataReader.h"
#include "sandbox/Sandbox.h"

#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <optional>

namespace pelmora::inspector {

namespace {

using platform::metadata::InspectorExit;

// What is read goes in steps down a file; endless ones are to end the process soon.
constexpr rlim_t kStackBytes = 8 << 20;
// It hands over nothing; what a sanitizer has to say may go into a file.
constexpr std::int64_t kFileBytes = 1 << 20;

void limitStack() {
  rlimit limit{};
  if (getrlimit(RLIMIT_STACK, &limit) != 0) return;
  limit.rlim_cur = std::min(kStackBytes, limit.rlim_cur);
  setrlimit(RLIMIT_STACK, &limit);
}

InspectorExit serve() {
  limitStack();
  std::optional<MetadataReader> reader;
  try {
    reader.emplace();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "pelmora-inspector: %s\n", error.what());
    return InspectorExit::notStarted;
  }
  InspectServer server(platform::metadata::kInspectorSocket,
                       [&reader](int descriptor) { return reader->read(descriptor); });
  const sandbox::Limits limits{.memory = platform::metadata::kInspectorMegabytes << 20,
                               .handedOver = kFileBytes};
  if (const Status status = sandbox::enterSandbox(limits); !status) {
    std::fprintf(stderr, "pelmora-inspector: %s\n", status.error().message.c_str());
    return InspectorExit::notSandboxed;
  }
  return server.run();
}

}  // namespace

}  // namespace pelmora::inspector

/// Started by the saver alone.
int main() { _exit(static_cast<int>(pelmora::inspector::serve())); }
