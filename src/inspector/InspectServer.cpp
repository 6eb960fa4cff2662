#include "inspector/InspectServer.h"

#include "platform/DescriptorMessage.h"

#include <poll.h>
#include <sys/resource.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace pelmora::inspector {

namespace {

using platform::FileDescriptor;
using platform::metadata::InspectorExit;
using platform::metadata::InspectOutcome;
using platform::metadata::InspectReply;
using platform::metadata::InspectRequest;

// Looking at its own age takes a moment too.
constexpr std::uint32_t kAnswersBetweenLooks = 16;

std::vector<std::byte> bytesOf(const std::string& text) {
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

/// Waits while the other side has not read the replies before; the limit of time ends that too.
bool send(int socket, const InspectReply& reply, const std::vector<std::byte>& body) {
  const auto head = std::as_bytes(std::span(&reply, 1));
  std::vector<std::byte> message(head.begin(), head.end());
  message.insert(message.end(), body.begin(), body.end());
  int error = 0;
  do {
    error = platform::sendMessage(socket, message, -1);
    pollfd writable{socket, POLLOUT, 0};
    if (error == EAGAIN) poll(&writable, 1, -1);
  } while (error == EAGAIN);
  return error == 0;
}

}  // namespace

InspectServer::InspectServer(int socket, Read read, const RetirementAge& age)
    : _socket(socket), _read(std::move(read)), _age(age), _atStart(_memory.now()) {}

InspectorExit InspectServer::run() {
  InspectReply greeting;
  greeting.outcome = InspectOutcome::read;
  if (!send(_socket, greeting, {})) return InspectorExit::done;
  while (!_isLeaving) {
    std::uint32_t serial = 0;
    FileDescriptor file;
    const Receiving received = receive(serial, file);
    if (received == Receiving::end) return InspectorExit::done;
    if (received == Receiving::broken) return InspectorExit::brokenRequest;
    renewLimit();
    // Nobody is there to take the reply: the other side gave up, and ends this process anyway.
    if (!answer(serial, file.get())) return InspectorExit::done;
  }
  return InspectorExit::done;
}

/// Setting it for each file would take a fifth of the time of a small one.
void InspectServer::renewLimit() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
  if (_limit && now.tv_sec == _limitedAt) return;
  _limit.reset();
  _limit.emplace(platform::metadata::kInspectSeconds);
  _limitedAt = now.tv_sec;
}

InspectServer::Receiving InspectServer::receive(std::uint32_t& serial, FileDescriptor& file) {
  InspectRequest request;
  const std::span bytes = std::as_writable_bytes(std::span(&request, 1));
  platform::Received received = platform::receiveMessage(_socket, bytes, platform::Waiting::no);
  if (received.error == EAGAIN) {
    _limit.reset();
    received = platform::receiveMessage(_socket, bytes, platform::Waiting::untilThere);
  }
  platform::ReceivedMessage& message = received.message;
  if (received.error != 0 || message.bytes.empty()) return Receiving::end;
  const bool isSound = !message.isCut && message.bytes.size() == bytes.size() &&
                       message.descriptors.size() == 1 &&
                       request.magic == platform::metadata::kInspectMagic && request.serial != 0;
  if (!isSound) return Receiving::broken;
  serial = request.serial;
  file = std::move(message.descriptors.front());
  return Receiving::request;
}

bool InspectServer::answer(std::uint32_t serial, int descriptor) {
  InspectReply reply;
  reply.serial = serial;
  const Answer answer = _read(descriptor);
  reply.outcome = answer ? InspectOutcome::read : InspectOutcome::failed;
  _isLeaving = ++_answered % kAnswersBetweenLooks == 0 && isOld();
  reply.isLeaving = _isLeaving ? 1 : 0;
  return send(_socket, reply, answer ? encodeMetadata(*answer) : bytesOf(answer.error().message));
}

bool InspectServer::isOld() const {
  const sandbox::MemoryUse::Bytes now = _memory.now();
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  return now.resident - _atStart.resident > _age.grownBytes ||
         now.mapped - _atStart.mapped > _age.grownBytes ||
         used.ru_utime.tv_sec + used.ru_stime.tv_sec >= _age.cpuSeconds;
}

}  // namespace pelmora::inspector
