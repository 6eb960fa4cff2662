#include "platform/linux/DecodeReply.h"

#include <fcntl.h>
#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <numeric>

namespace {

using namespace pelmora::platform;

constexpr int kLongestSide = 64;
constexpr int kSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

/// What comes with the message.
struct Attachment {
  std::uint8_t count = 0;
  std::uint8_t seals = 0;     // 0: all, else bits
  std::int8_t sizeError = 0;  // bytes that the memory is too large
  std::uint8_t isCut = 0;
};

/// Memory of the size that the message tells, wrong by `error`.
FileDescriptor memoryFor(std::span<const std::byte> message, const Attachment& attachment) {
  DecodeReply reply;
  std::memcpy(&reply, message.data(), std::min(message.size(), sizeof reply));
  const auto side = [](int told) { return std::clamp<std::int64_t>(told, 0, kLongestSide); };
  const std::int64_t size =
      4 * side(reply.pixelSize.width) * side(reply.pixelSize.height) + attachment.sizeError;
  FileDescriptor memory(memfd_create("pixels", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  if (ftruncate(memory.get(), std::max<std::int64_t>(size, 0)) != 0) std::abort();
  fcntl(memory.get(), F_ADD_SEALS, attachment.seals == 0 ? kSeals : attachment.seals & kSeals);
  return memory;
}

void require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

// Any bytes as a decoder's reply: what is accepted is a picture that can be shown, all of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Attachment attachment;
  if (size < sizeof attachment) return 0;
  std::memcpy(&attachment, data, sizeof attachment);
  ReceivedMessage message;
  message.bytes = std::as_bytes(std::span(data, size).subspan(sizeof attachment));
  message.isCut = attachment.isCut % 2 != 0;
  for (int i = 0; i < attachment.count % 4; ++i) {
    message.descriptors.push_back(memoryFor(message.bytes, attachment));
  }
  const auto reply = checkReply(std::move(message), {.serial = 1, .longestSide = kLongestSide});
  if (!reply) {
    require(!reply.error().message.empty());
    return 0;
  }
  if (!reply->picture) {
    require(reply->picture.error().message.find('\n') == std::string::npos);
    return 0;
  }
  const Pixels& pixels = *reply->picture->image.pixels;
  const auto [width, height] = pixels.size;
  require(width > 0 && height > 0 && std::max(width, height) <= kLongestSide);
  require(pixels.bytes.size() == 4U * static_cast<unsigned>(width * height));
  require(std::accumulate(pixels.bytes.begin(), pixels.bytes.end(), 0) == 0);
  return 0;
}
