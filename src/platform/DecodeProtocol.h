#pragma once

#include "shared/Geometry.h"

#include <fcntl.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace pelmora::platform {

// What the saver and its decoder say to each other, over a socket that keeps messages whole
// (SOCK_SEQPACKET): one request with the descriptor of a file, one reply with the descriptor of the
// memory that holds the pixels, and so on until one of them closes the socket. Both are built
// together, so the layout is the compiler's own. The saver believes nothing of a reply
// (`linux/DecodeReply.h`).

/// The descriptor that the decoder finds its end of the socket on.
constexpr int kDecoderSocket = 3;
/// The longest side that is asked for.
constexpr int kMaxLongestSide = 16384;
/// The most pixels that a picture may have in its file.
constexpr std::int64_t kMaxStoredPixels = 500'000'000;
/// The memory that the decoder may take beyond what it has when it is started.
constexpr std::int64_t kDecoderMegabytes = 1024;

constexpr std::uint32_t kRequestMagic = 0x50'4C'44'51;
constexpr std::uint32_t kReplyMagic = 0x50'4C'44'52;

/// What is no longer possible with memory that is handed over.
constexpr int kPixelSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

struct DecodeRequest {
  std::uint32_t magic = kRequestMagic;
  std::uint32_t serial = 0;  // the reply repeats it
  std::int32_t longestSide = 0;
  std::int32_t deadlineSeconds = 0;  // then nobody waits for the reply any more
};

enum class DecodeOutcome : std::uint32_t { shown = 1, failed = 2 };

struct DecodeReply {
  std::uint32_t magic = kReplyMagic;
  std::uint32_t serial = 0;
  DecodeOutcome outcome = DecodeOutcome::failed;
  std::uint32_t isLeaving = 0;  // 1: it takes no more requests
  // Of a picture that is shown. Its pixels, as `Pixels` has them, fill the sealed memory.
  PixelSize ownSize;    // upright, whatever size it was decoded at
  PixelSize pixelSize;  // upright
  std::uint32_t isOpaque = 0;
  std::int32_t orientation = 1;
  PixelSize storedSize;
  std::array<char, 16> format{};
  std::array<char, 128> profile{};
  // Of one that is not.
  std::array<char, 256> message{};
};

static_assert(std::is_trivially_copyable_v<DecodeRequest>);
static_assert(std::is_trivially_copyable_v<DecodeReply>);
static_assert(std::has_unique_object_representations_v<DecodeReply>, "a gap would leak memory");

/// How the decoder ends, as the status of its process.
enum class DecoderExit : int {
  done = 0,  // the socket was closed, or it said that it is leaving
  notStarted = 20,
  notSandboxed = 21,
  outOfMemory = 22,
  brokenRequest = 23,
};

}  // namespace pelmora::platform
