#include "platform/linux/index/InspectorProcess.h"

#include "platform/DescriptorMessage.h"
#include "platform/linux/Deadline.h"
#include "platform/metadata/MetadataProtocol.h"
#include "platform/PrintableLine.h"

#include <sys/socket.h>
#include <sys/wait.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <utility>

namespace pelmora::platform {

namespace {

using metadata::FileMetadata;
using metadata::InspectorExit;
using metadata::InspectOutcome;
using metadata::InspectReply;
using metadata::InspectRequest;

// How long an inspector that closed its socket may take to be gone: it is ending already.
constexpr std::chrono::milliseconds kPatience{200};
// However well it behaves, it may have been taken over by one of the files that it was given.
constexpr std::uint32_t kMaxRequests = 20'000;
// How long replies may gather before they are taken.
constexpr std::chrono::milliseconds kGathering{1};
constexpr std::size_t kLongestReason = 1024;

Error breach(const std::string& what) {
  return Error{"its inspector gave a wrong answer (" + what + ")"};
}

/// What need not be the file's fault: the machine was busy, or its disk did not answer.
EmbeddedMetadata passing(Error error) {
  EmbeddedMetadata problem(std::move(error));
  problem.isPassing = true;
  return problem;
}

EmbeddedMetadata tookTooLong(const char* what, std::chrono::milliseconds deadline) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%s took longer than %g s", what,
                static_cast<double>(deadline.count()) / 1000);
  return passing(Error{text.data()});
}

bool isTimeLimit(int status) { return WTERMSIG(status) == SIGXCPU || WTERMSIG(status) == SIGALRM; }

struct CheckedReply {
  bool isLeaving = false;
  Result<FileMetadata> metadata;
};

Result<CheckedReply> checkBody(const InspectReply& reply, std::span<const std::byte> body) {
  const bool isLeaving = reply.isLeaving == 1;
  if (reply.outcome == InspectOutcome::read) {
    Result<FileMetadata> metadata = metadata::decodeMetadata(body);
    if (!metadata) return breach(metadata.error().message);
    return CheckedReply{isLeaving, *std::move(metadata)};
  }
  if (reply.outcome != InspectOutcome::failed) return breach("no such outcome");
  if (body.empty() || body.size() > kLongestReason) return breach("a reason of a wrong length");
  const std::string_view reason(reinterpret_cast<const char*>(body.data()), body.size());
  return CheckedReply{isLeaving, Error{printableLine(reason)}};
}

Result<CheckedReply> check(const ReceivedMessage& message, std::uint32_t serial) {
  InspectReply reply;
  if (message.isCut || message.bytes.size() < sizeof reply) return breach("a wrong length");
  if (!message.descriptors.empty()) return breach("something that was not asked for");
  std::memcpy(&reply, message.bytes.data(), sizeof reply);
  if (reply.magic != metadata::kInspectedMagic) return breach("not a reply");
  if (reply.serial != serial) return breach("to another question");
  if (reply.isLeaving > 1) return breach("no such flag");
  return checkBody(reply, message.bytes.subspan(sizeof reply));
}

/// Whether a reply is the word that the inspector is ready.
bool isGreeting(const CheckedReply& reply) {
  return !reply.isLeaving && reply.metadata && reply.metadata->all().empty();
}

/// The next message; nullopt when it takes longer. `until` begins with the first waiting, and holds
/// for the messages that follow. `isBusy`: the other side has enough to do.
std::optional<Received> receiveWithin(int socket, std::span<std::byte> buffer, bool isBusy,
                                      std::chrono::milliseconds deadline,
                                      std::optional<Deadline>& until) {
  Received received = receiveMessage(socket, buffer, Waiting::no);
  if (received.error == EAGAIN && isBusy) {
    // A reply that is waited for costs the inspector a tenth of a small file, as it wakes this
    // thread: several are let come.
    std::this_thread::sleep_for(kGathering);
    received = receiveMessage(socket, buffer, Waiting::no);
  }
  if (received.error == EAGAIN) {
    if (!until) until.emplace(deadline);
    if (!until->waitFor(socket)) return std::nullopt;
    received = receiveMessage(socket, buffer, Waiting::no);
  }
  // The kernel's word for an end with requests unread, told once; replies may still be there.
  if (received.error == ECONNRESET) received = receiveMessage(socket, buffer, Waiting::no);
  return received;
}

}  // namespace

Result<InspectorProcess> InspectorProcess::start(const FilePath& program,
                                                 std::chrono::milliseconds deadline,
                                                 LateChildren& late) {
  Result<ChildProcess> child = ChildProcess::start(program, late);
  if (!child) return child.error();
  return InspectorProcess(*std::move(child), deadline);
}

bool InspectorProcess::hasEnded() const {
  std::byte first{};
  const ssize_t length = recv(_child->socket(), &first, 1, MSG_PEEK | MSG_DONTWAIT);
  return length >= 0 || (errno != EAGAIN && errno != EWOULDBLOCK && errno != EINTR);
}

int InspectorProcess::ask(int descriptor) {
  const InspectRequest request{.serial = _asked + 1};
  const int error =
      sendMessage(_child->socket(), std::as_bytes(std::span(&request, 1)), descriptor);
  if (error == 0) ++_asked;
  return error;
}

InspectorProcess::Answer InspectorProcess::next() {
  Answer answer = reply();
  if (answer.wasTaken) ++_answered;
  return answer;
}

InspectorProcess::Answer InspectorProcess::reply() {
  // One byte more, to see what is too long.
  std::array<std::byte, metadata::kMaxReplyBytes + 1> buffer;
  std::optional<Deadline> until;
  for (;;) {
    const bool isBusy = _hasGreeted && ahead() > metadata::kMaxAhead / 2;
    const std::optional<Received> received =
        receiveWithin(_child->socket(), buffer, isBusy, _deadline, until);
    if (!received) return endWith(tookTooLong(atWork(), _deadline));
    const bool isThere = received->error == 0 && !received->message.bytes.empty();
    if (!isThere) return endWith(endOfItself());
    Result<CheckedReply> reply = check(received->message, _hasGreeted ? _answered + 1 : 0);
    if (!reply) return endWith(EmbeddedMetadata(reply.error()));
    if (_hasGreeted) {
      if (reply->isLeaving || _answered + 1 >= kMaxRequests) _child.reset();
      return {true, EmbeddedMetadata(std::move(reply->metadata))};
    }
    if (!isGreeting(*reply)) return endWith(breach("no greeting"));
    _hasGreeted = true;
  }
}

const char* InspectorProcess::atWork() const {
  return _hasGreeted ? "reading it" : "the start of its inspector";
}

InspectorProcess::Answer InspectorProcess::endWith(EmbeddedMetadata problem) {
  _child.reset();
  return {_hasGreeted && ahead() > 0, std::move(problem)};
}

/// Of an inspector that closed its socket instead of answering.
EmbeddedMetadata InspectorProcess::endOfItself() {
  const std::optional<int> status = _child->end(kPatience);
  if (!status) return Error{"its inspector gave no answer"};
  if (WIFSIGNALED(*status) && isTimeLimit(*status)) return tookTooLong(atWork(), _deadline);
  if (!WIFSIGNALED(*status)) {
    switch (static_cast<InspectorExit>(WEXITSTATUS(*status))) {
      case InspectorExit::notStarted:
        return Error{"its inspector cannot start its libraries"};
      case InspectorExit::notSandboxed:
        return Error{"its inspector cannot shut itself off from the system, and so does not start"};
      default:
        break;
    }
  }
  Error end{"its inspector " + describeEnd(*status)};
  // A part of the file could not be had when it was looked at in memory.
  const bool isOfDisk = WIFSIGNALED(*status) && WTERMSIG(*status) == SIGBUS;
  return isOfDisk ? passing(std::move(end)) : std::move(end);
}

}  // namespace pelmora::platform
