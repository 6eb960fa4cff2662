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

namespace pelmora::platform {

namespace {

// How long a decoder that closed its socket may take to be gone: it is ending already.
constexpr std::chrono::milliseconds kPatience{200};
// However well it behaves, it may have been taken over by one of the pictures that it was given.
constexpr std::uint32_t kMaxRequests = 500;

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
/// not count what it makes to hand over. It cannot raise this again (`sandbox/Sandbox.h`).
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
  Received received = receiveMessage(_child->socket(), buffer, Waiting::no);
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
