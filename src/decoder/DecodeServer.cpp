#include "decoder/DecodeServer.h"

#include "decoder/Upright.h"
#include "platform/DescriptorMessage.h"
#include "sandbox/TimeLimit.h"

#include <fcntl.h>
#include <glib.h>
#include <malloc.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <new>
#include <string_view>
#include <utility>

namespace pelmora::decoder {

namespace {

using platform::DecodeOutcome;
using platform::DecodeReply;
using platform::DecodeRequest;
using platform::DecoderExit;
using platform::FileDescriptor;

constexpr unsigned kMemoryFlags = MFD_CLOEXEC | MFD_ALLOW_SEALING;
constexpr unsigned kNeverAProgram = 0x8;  // MFD_NOEXEC_SEAL, which older headers lack
constexpr int kMaxDeadlineSeconds = 3600;
// Memory that is free again is given back to the system from here on; it costs a while.
constexpr std::int64_t kWorthTrimming = 24 << 20;

template <std::size_t size>
void setText(std::array<char, size>& field, std::string_view text) {
  text = text.substr(0, size - 1);
  field.fill('\0');
  std::copy(text.begin(), text.end(), field.begin());
}

std::size_t byteCount(const PixelSize& size) {
  return 4 * static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

/// Memory that can be handed over. Hardened systems give none that could be made a program of.
FileDescriptor makeMemory() {
  FileDescriptor memory(memfd_create("pixels", kMemoryFlags | kNeverAProgram));
  if (memory.isOpen() || errno != EINVAL) return memory;
  return FileDescriptor(memfd_create("pixels", kMemoryFlags));  // before Linux 6.3
}

/// The picture, upright, in memory that nobody can change any more; not open where there is none.
FileDescriptor writeToMemory(const DecodedPicture& picture, DecodeReply& reply) {
  const std::size_t size = byteCount(reply.pixelSize);
  FileDescriptor memory = makeMemory();
  if (!memory.isOpen() || ftruncate(memory.get(), static_cast<off_t>(size)) != 0) return {};
  void* const mapping =
      mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE, memory.get(), 0);
  if (mapping == MAP_FAILED) return {};
  const std::span<std::uint8_t> bytes(static_cast<std::uint8_t*>(mapping), size);
  reply.isOpaque = writeUpright(picture.raster, picture.facts.orientation, bytes) ? 1 : 0;
  munmap(mapping, size);
  if (fcntl(memory.get(), F_ADD_SEALS, platform::kPixelSeals) != 0) return {};
  return memory;
}

FileDescriptor describePicture(const DecodedPicture& picture, DecodeReply& reply) {
  const PictureFacts& facts = picture.facts;
  reply.ownSize = uprightSize(facts.storedSize, facts.orientation);
  reply.pixelSize = uprightSize(picture.raster.format.size, facts.orientation);
  reply.storedSize = facts.storedSize;
  reply.orientation = facts.orientation;
  setText(reply.format, facts.format);
  setText(reply.profile, describeProfile(facts.profile));
  FileDescriptor memory = writeToMemory(picture, reply);
  if (memory.isOpen()) {
    reply.outcome = DecodeOutcome::shown;
  } else {
    setText(reply.message, "there is no memory left for it");
  }
  return memory;
}

/// While other programs of the user have handed over many descriptors that nobody has read yet, the
/// kernel takes no more of them: that passes, or the limit of time ends this process.
bool send(int socket, const DecodeReply& reply, const FileDescriptor& memory) {
  int error = 0;
  do {
    error = platform::sendMessage(socket, std::as_bytes(std::span(&reply, 1)), memory.get());
    const timespec moment{0, 5'000'000};
    if (error == ETOOMANYREFS) nanosleep(&moment, nullptr);
  } while (error == ETOOMANYREFS);
  return error == 0;
}

bool isSound(const DecodeRequest& asked) {
  return asked.magic == platform::kRequestMagic && asked.longestSide > 0 &&
         asked.longestSide <= platform::kMaxLongestSide && asked.deadlineSeconds > 0 &&
         asked.deadlineSeconds <= kMaxDeadlineSeconds;
}

void endNow() { _exit(static_cast<int>(DecoderExit::outOfMemory)); }

/// GLib aborts after it: most of its fatal errors are memory that it did not get.
void onFatalError(const gchar*, GLogLevelFlags, const gchar* message, gpointer) {
  if (std::string_view(message ? message : "").find("allocate") != std::string_view::npos) endNow();
}

}  // namespace

DecodeServer::DecodeServer(int socket, Decode decode, const RetirementAge& age)
    : _socket(socket), _decode(std::move(decode)), _age(age), _atStart(_memory.now()) {}

DecoderExit DecodeServer::run() {
  while (!_isLeaving) {
    Request request;
    switch (read(request)) {
      case Reading::end:
        return DecoderExit::done;
      case Reading::broken:
        return DecoderExit::brokenRequest;
      case Reading::request:
        break;
    }
    const sandbox::TimeLimit limit(request.asked.deadlineSeconds);
    // Nobody is there to take the reply: the other side gave up, and ends this process anyway.
    if (!answer(request)) return DecoderExit::done;
  }
  return DecoderExit::done;
}

DecodeServer::Reading DecodeServer::read(Request& request) const {
  const std::span bytes = std::as_writable_bytes(std::span(&request.asked, 1));
  platform::Received received =
      platform::receiveMessage(_socket, bytes, platform::Waiting::untilThere);
  platform::ReceivedMessage& message = received.message;
  if (received.error != 0 || message.bytes.empty()) return Reading::end;
  const bool isWhole = !message.isCut && message.bytes.size() == bytes.size();
  if (!isWhole || message.descriptors.size() != 1 || !isSound(request.asked)) {
    return Reading::broken;
  }
  request.file = std::move(message.descriptors.front());
  return Reading::request;
}

bool DecodeServer::answer(const Request& request) {
  DecodeReply reply;
  reply.serial = request.asked.serial;
  FileDescriptor memory;
  {
    const Result<DecodedPicture> picture = _decode(request.file.get(), request.asked.longestSide);
    if (picture) {
      memory = describePicture(*picture, reply);
    } else {
      setText(reply.message, picture.error().message);
    }
  }
  if (_memory.now().resident > _atStart.resident + kWorthTrimming) malloc_trim(0);
  _isLeaving = isOld();
  reply.isLeaving = _isLeaving ? 1 : 0;
  return send(_socket, reply, memory);
}

bool DecodeServer::isOld() const {
  const sandbox::MemoryUse::Bytes now = _memory.now();
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  return now.resident - _atStart.resident > _age.grownBytes ||
         now.mapped - _atStart.mapped > _age.grownBytes ||
         used.ru_utime.tv_sec + used.ru_stime.tv_sec >= _age.cpuSeconds;
}

void endWhenOutOfMemory() {
  std::set_new_handler(endNow);
  g_log_set_handler("GLib", static_cast<GLogLevelFlags>(G_LOG_LEVEL_ERROR | G_LOG_FLAG_FATAL),
                    onFatalError, nullptr);
}

}  // namespace pelmora::decoder
