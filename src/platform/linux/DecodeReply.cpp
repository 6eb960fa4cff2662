#include "platform/linux/DecodeReply.h"

#include "platform/PrintableLine.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace pelmora::platform {

namespace {

// A reduced size that the decoder started from may round otherwise than the picture's own.
constexpr int kRounding = 2;

Error breach(const char* what) {
  return Error{std::string("its decoder gave a wrong answer (") + what + ")"};
}

template <std::size_t size>
std::optional<std::string> textIn(const std::array<char, size>& field) {
  const auto end = std::find(field.begin(), field.end(), '\0');
  if (end == field.end()) return std::nullopt;
  return printableLine(
      std::string_view(field.data(), static_cast<std::size_t>(end - field.begin())));
}

bool isFlag(std::uint32_t value) { return value <= 1; }

bool isPossible(const PixelSize& size) {
  return size.width > 0 && size.height > 0 &&
         std::int64_t{size.width} * size.height <= kMaxStoredPixels;
}

/// Whether pixels of that size are the whole picture, made smaller where it is too large.
bool isFitted(const PixelSize& pixels, const PixelSize& own, int longestSide) {
  const int longest = std::max(own.width, own.height);
  const double scale = std::min(1.0, static_cast<double>(longestSide) / longest);
  const auto isNear = [scale](int side, int ownSide) {
    return std::abs(side - ownSide * scale) <= kRounding;
  };
  return std::max(pixels.width, pixels.height) <= std::min(longestSide, longest) &&
         isNear(pixels.width, own.width) && isNear(pixels.height, own.height);
}

std::size_t byteCount(const PixelSize& size) {
  return 4 * static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

/// Whether the memory stays as it is. Only in the memory of ordinary pages (not in huge ones, of
/// which there may be none left) is every byte sure to be there when it is read.
bool isSealedMemory(int descriptor, std::size_t size) {
  struct stat facts {};
  struct statfs filesystem {};
  const int seals = fcntl(descriptor, F_GET_SEALS);
  return seals >= 0 && (seals & kPixelSeals) == kPixelSeals && fstat(descriptor, &facts) == 0 &&
         S_ISREG(facts.st_mode) && facts.st_size == static_cast<off_t>(size) &&
         fstatfs(descriptor, &filesystem) == 0 && filesystem.f_type == TMPFS_MAGIC;
}

/// The memory's bytes, mapped for as long as any copy is kept.
std::optional<SharedBytes> mapped(int descriptor, std::size_t size) {
  // Private, as older kernels map nothing shared that is sealed against writing.
  void* const memory = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_POPULATE, descriptor, 0);
  if (memory == MAP_FAILED) return std::nullopt;
  std::shared_ptr<const void> owner(
      memory, [size](const void* mapping) { munmap(const_cast<void*>(mapping), size); });
  return SharedBytes(std::move(owner), {static_cast<const std::uint8_t*>(memory), size});
}

Result<CheckedReply> checkShown(const DecodeReply& reply, const std::vector<FileDescriptor>& sent,
                                int longestSide) {
  const auto format = textIn(reply.format);
  const auto profile = textIn(reply.profile);
  if (!format || !profile) return breach("an endless text");
  if (!isFlag(reply.isOpaque)) return breach("no such flag");
  if (reply.orientation < 1 || reply.orientation > 8) return breach("no such orientation");
  if (!isPossible(reply.ownSize) || !isPossible(reply.storedSize) || !isPossible(reply.pixelSize) ||
      !isFitted(reply.pixelSize, reply.ownSize, longestSide)) {
    return breach("a wrong size");
  }
  if (sent.size() != 1) return breach("not one memory");
  const std::size_t size = byteCount(reply.pixelSize);
  if (!isSealedMemory(sent[0].get(), size)) return breach("not the memory that it should be");
  auto bytes = mapped(sent[0].get(), size);
  if (!bytes) return Error{"there is no memory left for it"};
  auto pixels = std::make_shared<const Pixels>(
      Pixels{reply.pixelSize, reply.isOpaque == 1, *std::move(bytes)});
  const Size own{double(reply.ownSize.width), double(reply.ownSize.height)};
  return CheckedReply{InspectedPicture{Image{own, std::move(pixels)}, *format, reply.storedSize,
                                       reply.orientation, *profile},
                      reply.isLeaving == 1};
}

Result<CheckedReply> checkFailed(const DecodeReply& reply,
                                 const std::vector<FileDescriptor>& sent) {
  const auto message = textIn(reply.message);
  if (!message || message->empty()) return breach("no reason");
  if (!sent.empty()) return breach("memory that was not asked for");
  return CheckedReply{Error{*message}, reply.isLeaving == 1};
}

}  // namespace

Result<CheckedReply> checkReply(ReceivedMessage message, const DecodeRequest& request) {
  DecodeReply reply;
  if (message.isCut || message.bytes.size() != sizeof reply) return breach("a wrong length");
  std::memcpy(&reply, message.bytes.data(), sizeof reply);
  if (reply.magic != kReplyMagic) return breach("not a reply");
  if (reply.serial != request.serial) return breach("to another question");
  if (!isFlag(reply.isLeaving)) return breach("no such flag");
  switch (reply.outcome) {
    case DecodeOutcome::shown:
      return checkShown(reply, message.descriptors, request.longestSide);
    case DecodeOutcome::failed:
      return checkFailed(reply, message.descriptors);
  }
  return breach("no such outcome");
}

}  // namespace pelmora::platform
