#include "platform/linux/DecoderProcess.h"

#include "platform/DescriptorMessage.h"
#include "platform/SystemError.h"

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

namespace pelmora::platform {

namespace {

// How long a decoder that closed its socket may take to be gone: it is ending already.
constexpr std::chrono::milliseconds kPatience{200};
// More than a reply has, to see what a wrong one brings.
constexpr std::size_t kMaxDescriptors = 8;
// However well it behaves, it may have been taken over by one of the pictures that it was given.
constexpr std::uint32_t kMaxRequests = 500;

std::vector<FileDescriptor> descriptorsOf(msghdr& message) {
  std::vector<FileDescriptor> descriptors;
  for (cmsghdr* header = CMSG_FIRSTHDR(&message); header; header = CMSG_NXTHDR(&message, header)) {
    if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) continue;
    const std::size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    for (std::size_t i = 0; i < count; ++i) {
      int descriptor = -1;
      std::memcpy(&descriptor, CMSG_DATA(header) + i * sizeof descriptor, sizeof descriptor);
      descriptors.emplace_back(descriptor);
    }
  }
  return descriptors;
}

struct Received {
  int error = 0;  // 0 with no bytes: the socket was closed
  ReceivedMessage message;
};

Received receive(int socket, std::span<std::byte> buffer) {
  iovec part{buffer.data(), buffer.size()};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(kMaxDescriptors * sizeof(int))> control{};
  msghdr message{};
  ssize_t length = 0;
  do {
    message = {};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    length = recvmsg(socket, &message, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
  } while (length < 0 && errno == EINTR);
  if (length < 0) return {errno, {}};
  const bool isCut = (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0;
  return {0, {buffer.first(static_cast<std::size_t>(length)), isCut, descriptorsOf(message)}};
}

std::string secondsText(std::chrono::milliseconds time) {
  std::array<char, 32> text{};
  const double seconds = static_cast<double>(time.count()) / 1000;
  std::snprintf(text.data(), text.size(), seconds == 1 ? "%g second" : "%g seconds", seconds);
  return text.data();
}

bool isTimeLimit(int status) { return WTERMSIG(status) == SIGXCPU || WTERMSIG(status) == SIGALRM; }

}  // namespace

Error tookTooLong(std::chrono::milliseconds deadline) {
  return Error{"decoding it took longer than " + secondsText(deadline)};
}

Result<DecoderProcess> DecoderProcess::start(const FilePath& program,
                                             std::chrono::milliseconds deadline,
                                             LateChildren& late) {
  Result<ChildProcess> child = ChildProcess::start(program, late);
  if (!child) return child.error();
  return DecoderProcess(*std::move(child), deadline);
}

/// Nothing may come from a decoder that was not asked: what comes is its end, or nonsense.
bool DecoderProcess::hasEnded() const {
  std::byte first{};
  const ssize_t length = recv(_child->socket(), &first, 1, MSG_PEEK | MSG_DONTWAIT);
  return length >= 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR);
}

/// Lets the decoder make memory for the largest answer and no more: its own limit of memory does
/// not count what it makes to hand over. It cannot raise this again (`decoder/Sandbox.h`).
void DecoderProcess::limitAnswer(int longestSide) const {
  const auto side = static_cast<rlim_t>(longestSide);
  rlimit limit{};
  if (prlimit(id(), RLIMIT_FSIZE, nullptr, &limit) != 0) return;
  limit.rlim_cur = std::min(4 * side * side, limit.rlim_max);
  prlimit(id(), RLIMIT_FSIZE, &limit, nullptr);
}

DecoderProcess::Attempt DecoderProcess::request(int descriptor, int longestSide) {
  return request(descriptor, longestSide, Deadline(_deadline));
}

DecoderProcess::Attempt DecoderProcess::request(int descriptor, int longestSide,
                                                const Deadline& until) {
  if (!isAlive() || hasEnded()) return notTaken();
  const auto seconds = std::chrono::ceil<std::chrono::seconds>(_deadline).count();
  const DecodeRequest asked{.serial = ++_serial,
                            .longestSide = std::clamp(longestSide, 1, kMaxLongestSide),
                            .deadlineSeconds = static_cast<std::int32_t>(seconds)};
  limitAnswer(asked.longestSide);
  const int error = sendMessage(_child->socket(), std::as_bytes(std::span(&asked, 1)), descriptor);
  if (error == 0) return answer(asked, until);
  if (error == EPIPE || error == ECONNRESET) return notTaken();
  _child.reset();
  return {true, Error{"its decoder cannot be asked: " + systemErrorText(error)}};
}

DecoderProcess::Attempt DecoderProcess::answer(const DecodeRequest& request,
                                               const Deadline& until) {
  if (!until.waitFor(_child->socket())) {
    _child.reset();
    return {true, tookTooLong(_deadline)};
  }
  std::array<std::byte, sizeof(DecodeReply)> buffer{};
  Received received = receive(_child->socket(), buffer);
  // The kernel's word for an end with the request unread.
  if (received.error == ECONNRESET) return notTaken();
  const bool isReply = received.error == 0 && !received.message.bytes.empty();
  if (!isReply) return {true, endWithoutReply()};
  Result<CheckedReply> reply = checkReply(std::move(received.message), request);
  if (!reply || reply->isLeaving || request.serial >= kMaxRequests) _child.reset();
  if (!reply) return {true, reply.error()};
  return {true, std::move(reply->picture)};
}

DecoderProcess::Attempt DecoderProcess::notTaken() {
  const std::optional<int> status = _child ? _child->end(kPatience) : std::nullopt;
  _child.reset();
  return {false, describe(status)};
}

/// Of a decoder that closed its socket instead.
Error DecoderProcess::endWithoutReply() {
  const std::optional<int> status = _child->end(kPatience);
  _child.reset();
  return describe(status);
}

Error DecoderProcess::describe(std::optional<int> status) const {
  if (!status) return Error{"its decoder gave no answer"};
  if (WIFSIGNALED(*status)) {
    return isTimeLimit(*status) ? tookTooLong(_deadline)
                                : Error{"its decoder " + describeEnd(*status)};
  }
  switch (static_cast<DecoderExit>(WEXITSTATUS(*status))) {
    case DecoderExit::outOfMemory:
      return Error{"it needs more than " + std::to_string(kDecoderMegabytes) +
                   " MB of memory to decode"};
    case DecoderExit::notStarted:
      return Error{"its decoder cannot start its libraries"};
    case DecoderExit::notSandboxed:
      return Error{"its decoder cannot shut itself off from the system, and so does not start"};
    default:
      return Error{"its decoder " + describeEnd(*status)};
  }
}

}  // namespace pelmora::platform
