#include "decoder/BmpRows.h"
#include "decoder/DecodeServer.h"
#include "decoder/LibraryPages.h"
#include "decoder/PictureDecoder.h"
#include "decoder/VipsRows.h"
#include "sandbox/Sandbox.h"

#include <malloc.h>
#include <pthread.h>
#include <unistd.h>

#include <cstdio>

namespace pelmora::decoder {

namespace {

using platform::DecoderExit;

constexpr std::size_t kStackBytes = 2 << 20;

DecoderExit serve() {
  // A heap and a large stack for each of a library's threads would use up the addresses that the
  // limit of memory leaves, on a machine with many processors.
  mallopt(M_ARENA_MAX, 1);
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, kStackBytes);
  pthread_setattr_default_np(&attributes);
  endWhenOutOfMemory();
  if (!startVips()) return DecoderExit::notStarted;
  startBmp();
  PictureDecoder decoder;
  DecodeServer server(platform::kDecoderSocket, [&decoder](int descriptor, int longestSide) {
    return decoder.decode(descriptor, longestSide);
  });
  giveBackLibraryPages();
  constexpr std::int64_t kLargestPicture =
      std::int64_t{4} * platform::kMaxLongestSide * platform::kMaxLongestSide;
  const sandbox::Limits limits{.memory = platform::kDecoderMegabytes << 20,
                               .handedOver = kLargestPicture};
  if (const Status status = sandbox::enterSandbox(limits); !status) {
    std::fprintf(stderr, "pelmora-decoder: %s\n", status.error().message.c_str());
    return DecoderExit::notSandboxed;
  }
  return server.run();
}

}  // namespace

}  // namespace pelmora::decoder

/// Started by the saver alone. Ends without the libraries' cleaning up, which wants what the
/// sandbox denies.
int main() { _exit(static_cast<int>(pelmora::decoder::serve())); }
