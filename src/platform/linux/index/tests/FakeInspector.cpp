#include "platform/DescriptorMessage.h"
#include "platform/metadata/MetadataProtocol.h"

#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

// An inspector that reads nothing and does what the files tell it, mostly wrong things; how it
// begins, its own name tells.

namespace pelmora::platform {

namespace {

using metadata::FileMetadata;
using metadata::InspectorExit;
using metadata::InspectOutcome;
using metadata::InspectReply;
using metadata::InspectRequest;

using Bytes = std::vector<std::byte>;

void send(const InspectReply& reply, const Bytes& body = {}, int descriptor = -1) {
  const auto head = std::as_bytes(std::span(&reply, 1));
  Bytes message(head.begin(), head.end());
  message.insert(message.end(), body.begin(), body.end());
  if (sendMessage(metadata::kInspectorSocket, message, descriptor) != 0) _exit(1);
}

void sendRaw(const Bytes& message) {
  if (sendMessage(metadata::kInspectorSocket, message, -1) != 0) _exit(1);
}

[[noreturn]] void hang() {
  for (;;) pause();
}

[[noreturn]] void dieOf(int signal) {
  std::signal(signal, SIG_DFL);
  raise(signal);
  hang();
}

Bytes bytesOf(std::string_view text) {
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

InspectReply replyTo(std::uint32_t serial, InspectOutcome outcome) {
  InspectReply reply;
  reply.serial = serial;
  reply.outcome = outcome;
  return reply;
}

Bytes rating(std::int64_t value) {
  FileMetadata metadata;
  metadata.set("kMDItemStarRating", {value});
  return encodeMetadata(metadata);
}

Bytes tags() {
  FileMetadata metadata;
  metadata.set("kMDItemUserTags", {std::string("Red"), std::string("Sea")});
  return encodeMetadata(metadata);
}

void begin(std::string_view name) {
  const InspectReply greeting = replyTo(0, InspectOutcome::read);
  if (name == "dies-at-once") dieOf(SIGSEGV);
  if (name == "lacks-libraries") _exit(static_cast<int>(InspectorExit::notStarted));
  if (name == "lacks-a-sandbox") _exit(static_cast<int>(InspectorExit::notSandboxed));
  if (name == "hangs-at-once") hang();
  if (name == "is-unfriendly") return send(replyTo(1, InspectOutcome::read), rating(1));
  if (name == "greets-with-a-failure") {
    return send(replyTo(0, InspectOutcome::failed), bytesOf("it is damaged"));
  }
  if (name == "greets-with-a-gift") return send(greeting, rating(1));
  send(greeting);
  if (name == "dies-after-greeting") dieOf(SIGSEGV);
}

void endAs(std::string_view told) {
  if (told == "die") dieOf(SIGSEGV);
  if (told == "die of the time limit") dieOf(SIGALRM);
  if (told == "die of the disk") dieOf(SIGBUS);
  if (told == "end with status 7") _exit(7);
  if (told == "hang") hang();
  if (told == "close and live on") {
    close(metadata::kInspectorSocket);
    hang();
  }
}

/// A reply with something wrong in its fields.
bool sendWrongReply(std::string_view told, std::uint32_t serial) {
  InspectReply reply = replyTo(serial, InspectOutcome::read);
  if (told == "another magic") reply.magic = 7;
  if (told == "another serial") ++reply.serial;
  if (told == "the serial before") --reply.serial;
  if (told == "no outcome") reply.outcome = static_cast<InspectOutcome>(3);
  if (told == "no flag") reply.isLeaving = 2;
  const bool isWrong = reply.magic != metadata::kInspectedMagic || reply.serial != serial ||
                       reply.outcome != InspectOutcome::read || reply.isLeaving != 0;
  if (isWrong) send(reply, rating(1));
  return isWrong;
}

/// A reply with something wrong in what follows it.
bool sendWrongBody(std::string_view told, std::uint32_t serial) {
  const InspectReply read = replyTo(serial, InspectOutcome::read);
  const InspectReply failed = replyTo(serial, InspectOutcome::failed);
  if (told == "half a reply") {
    sendRaw(Bytes(sizeof read / 2));
  } else if (told == "nonsense") {
    send(read, Bytes(100, std::byte{0xFF}));
  } else if (told == "half of the metadata") {
    Bytes half = rating(1);
    half.resize(half.size() / 2);
    send(read, half);
  } else if (told == "too much") {
    send(read, Bytes(metadata::kMaxReplyBytes + 1 - sizeof read));
  } else if (told == "far too much") {
    send(read, Bytes(2 * metadata::kMaxReplyBytes));
  } else if (told == "a descriptor") {
    send(read, rating(1), STDIN_FILENO);
  } else if (told == "no reason") {
    send(failed);
  } else if (told == "an endless reason") {
    send(failed, Bytes(2000, std::byte{'x'}));
  } else {
    return false;
  }
  return true;
}

void sendOther(std::string_view told, std::uint32_t serial) {
  const InspectReply failed = replyTo(serial, InspectOutcome::failed);
  InspectReply read = replyTo(serial, InspectOutcome::read);
  if (told == "fail") return send(failed, bytesOf("it is damaged"));
  if (told == "fail with control characters") return send(failed, bytesOf("it\nis \x1b[31mbad"));
  if (told == "tag") return send(read, tags());
  if (told == "leave") read.isLeaving = 1;
  const int times = told == "flood" ? 9 : told == "answer twice" ? 2 : 1;
  for (int i = 0; i < times; ++i) send(read, rating(std::atoi(std::string(told).c_str())));
}

std::string readAll(int file) {
  std::array<char, 256> text{};
  const ssize_t length = pread(file, text.data(), text.size(), 0);
  return {text.data(), static_cast<std::size_t>(length > 0 ? length : 0)};
}

int serve(std::string_view name) {
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
  begin(name);
  for (;;) {
    InspectRequest request;
    const auto buffer = std::as_writable_bytes(std::span(&request, 1));
    const Received received =
        receiveMessage(metadata::kInspectorSocket, buffer, Waiting::untilThere);
    if (received.message.bytes.size() != sizeof request) return 0;
    if (received.message.descriptors.size() != 1) return 1;
    const std::string told = readAll(received.message.descriptors.front().get());
    endAs(told);
    if (sendWrongReply(told, request.serial) || sendWrongBody(told, request.serial)) continue;
    sendOther(told, request.serial);
  }
}

}  // namespace

}  // namespace pelmora::platform

int main(int, char** words) {
  const std::string_view path = *words;
  return pelmora::platform::serve(path.substr(path.rfind('/') + 1));
}
