#include "platform/linux/tests/FakeDecoder.h"

#include "platform/DecodeProtocol.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <string_view>
#include <vector>

// A decoder that decodes nothing and does what it is told, mostly wrong things.

namespace pelmora::platform {

namespace {

constexpr int kSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
constexpr int kSize = 4 * kFakeWidth * kFakeHeight;

int memory(int size, int seals) {
  const int descriptor = memfd_create("pixels", MFD_CLOEXEC | MFD_ALLOW_SEALING);
  for (int i = 0; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(i);
    if (write(descriptor, &byte, 1) != 1) _exit(1);
  }
  if (seals != 0) fcntl(descriptor, F_ADD_SEALS, seals);
  return descriptor;
}

void sendMessage(const void* bytes, std::size_t size, const std::vector<int>& descriptors) {
  iovec part{const_cast<void*>(bytes), size};
  std::vector<char> control(CMSG_SPACE(descriptors.size() * sizeof(int)));
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  if (!descriptors.empty()) {
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(descriptors.size() * sizeof(int));
    std::memcpy(CMSG_DATA(header), descriptors.data(), descriptors.size() * sizeof(int));
  }
  if (sendmsg(kDecoderSocket, &message, MSG_NOSIGNAL) < 0) _exit(1);
  for (const int descriptor : descriptors) close(descriptor);
}

template <std::size_t size>
void setText(std::array<char, size>& field, std::string_view text) {
  std::copy(text.begin(), text.end(), field.begin());
}

DecodeReply goodReply(const DecodeRequest& request) {
  DecodeReply reply;
  reply.serial = request.serial;
  reply.outcome = DecodeOutcome::shown;
  reply.ownSize = reply.pixelSize = {kFakeWidth, kFakeHeight};
  reply.storedSize = {kFakeHeight, kFakeWidth};
  reply.isOpaque = 1;
  reply.orientation = 6;
  setText(reply.format, "FAKE");
  setText(reply.profile, "Display P3");
  return reply;
}

DecodeReply failedReply(const DecodeRequest& request, std::string_view reason) {
  DecodeReply reply;
  reply.serial = request.serial;
  setText(reply.message, reason);
  return reply;
}

void send(const DecodeReply& reply, const std::vector<int>& descriptors) {
  sendMessage(&reply, sizeof reply, descriptors);
}

[[noreturn]] void hang() {
  for (;;) pause();
}

[[noreturn]] void dieOf(int signal) {
  std::signal(signal, SIG_DFL);
  raise(signal);
  hang();
}

void end(int behaviour) {
  switch (behaviour) {
    case kDiesAfterReading:
      dieOf(SIGSEGV);
    case kDiesAfterTheMemory:
      memory(kSize, kSeals);
      dieOf(SIGABRT);
    case kDiesOfItsTimeLimit:
      dieOf(SIGALRM);
    case kEndsOutOfMemory:
      _exit(static_cast<int>(DecoderExit::outOfMemory));
    case kEndsWithoutASandbox:
      _exit(static_cast<int>(DecoderExit::notSandboxed));
    case kEndsWithStatusSeven:
      _exit(7);
    case kClosesAndLivesOn:
      close(kDecoderSocket);
      hang();
    case kHangs:
      hang();
    case kFillsTheMemory: {
      const std::vector<char> more(4 * kFillsTheMemory * kFillsTheMemory + 1);
      const int descriptor = memfd_create("pixels", MFD_CLOEXEC);
      for (int i = 0; i < 2; ++i) {
        if (write(descriptor, more.data(), more.size()) < 0) _exit(1);
      }
      hang();
    }
    default:
      break;
  }
}

/// A reply with its one memory, with something wrong in its fields.
bool sendWrongReply(int behaviour, DecodeReply reply) {
  switch (behaviour) {
    case kSendsAnotherMagic:
      reply.magic = 7;
      break;
    case kSendsAnotherSerial:
      ++reply.serial;
      break;
    case kSendsNoOutcome:
      reply.outcome = static_cast<DecodeOutcome>(3);
      break;
    case kSendsNoFlag:
      reply.isOpaque = 2;
      break;
    case kSendsNoOrientation:
      reply.orientation = 9;
      break;
    case kSendsEndlessText:
      reply.profile.fill('x');
      break;
    case kSendsNoPixels:
      reply.pixelSize = {0, 0};
      break;
    case kSendsNegativeSides:
      reply.pixelSize = {-kFakeWidth, -kFakeHeight};
      break;
    case kSendsHugeSides:
      reply.ownSize = {1 << 30, 1 << 29};
      break;
    case kSendsMoreThanWasAsked:
      reply.ownSize = reply.pixelSize = {400, 200};
      break;
    case kSendsAnotherShape:
      reply.ownSize = {kFakeHeight, 40};
      break;
    case kSendsControlCharacters:
      setText(reply.format, "\x1b[2J\n");
      break;
    default:
      return false;
  }
  send(reply, {memory(kSize, kSeals)});
  return true;
}

bool sendWrongMemory(int behaviour, const DecodeReply& reply) {
  const auto good = [] { return memory(kSize, kSeals); };
  switch (behaviour) {
    case kSendsNoMemory:
      send(reply, {});
      return true;
    case kSendsTwoMemories:
      send(reply, {good(), good()});
      return true;
    case kSendsManyDescriptors: {
      std::vector<int> many(40);
      for (int& each : many) each = good();
      send(reply, many);
      return true;
    }
    case kSendsUnsealedMemory:
      send(reply, {memory(kSize, 0)});
      return true;
    case kSendsGrowingMemory:
      send(reply, {memory(kSize, kSeals & ~F_SEAL_GROW)});
      return true;
    case kSendsShortMemory:
      send(reply, {memory(kSize - 1, kSeals)});
      return true;
    case kSendsLongMemory:
      send(reply, {memory(kSize + 1, kSeals)});
      return true;
    case kSendsAFile:
      send(reply, {open("/proc/self/exe", O_RDONLY | O_CLOEXEC)});
      return true;
    case kSendsASocket:
      send(reply, {socket(AF_UNIX, SOCK_STREAM, 0)});
      return true;
    default:
      return false;
  }
}

void sendOther(int behaviour, const DecodeRequest& request) {
  DecodeReply good = goodReply(request);
  DecodeReply failed = failedReply(request, "it is damaged");
  switch (behaviour) {
    case kIsLeavingAfterAFailure:
      failed.isLeaving = 1;
      [[fallthrough]];
    case kSaysItIsDamaged:
      return send(failed, {});
    case kSaysControlCharacters:
      return send(failedReply(request, "it\nis \x1b[31m bad"), {});
    case kSendsNoReason:
      return send(failedReply(request, ""), {});
    case kSendsEndlessReason:
      failed.message.fill('x');
      return send(failed, {});
    case kSendsMemoryWithAFailure:
      return send(failed, {memory(kSize, kSeals)});
    case kSendsNothing:
      return sendMessage(&good, 0, {});
    case kSendsHalfAReply:
      return sendMessage(&good, sizeof good / 2, {memory(kSize, kSeals)});
    case kSendsTooMuch: {
      std::array<char, sizeof good + 1> bytes{};
      std::memcpy(bytes.data(), &good, sizeof good);
      return sendMessage(bytes.data(), bytes.size(), {memory(kSize, kSeals)});
    }
    case kAnswersTwice:
      send(good, {memory(kSize, kSeals)});
      break;
    case kIsLeaving:
      good.isLeaving = 1;
      break;
    default:
      break;
  }
  send(good, {memory(kSize, kSeals)});
}

/// Reads a request and closes the file that comes with it; false when there are no more.
bool readRequest(DecodeRequest& request, int flags) {
  iovec part{&request, sizeof request};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  if (recvmsg(kDecoderSocket, &message, flags) != sizeof request) return false;
  int descriptor = -1;
  std::memcpy(&descriptor, CMSG_DATA(CMSG_FIRSTHDR(&message)), sizeof descriptor);
  close(descriptor);
  return true;
}

int serve() {
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
  DecodeRequest request;
  while (readRequest(request, MSG_PEEK)) {
    if (request.longestSide == kDiesBeforeReading) return 9;
    if (!readRequest(request, 0)) return 1;
    end(request.longestSide);
    if (sendWrongReply(request.longestSide, goodReply(request))) continue;
    if (sendWrongMemory(request.longestSide, goodReply(request))) continue;
    sendOther(request.longestSide, request);
  }
  return 0;
}

}  // namespace

}  // namespace pelmora::platform

int main() { return pelmora::platform::serve(); }
