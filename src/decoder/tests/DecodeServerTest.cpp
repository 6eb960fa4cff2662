#include "decoder/DecodeServer.h"

#include "platform/DescriptorMessage.h"
#include "platform/linux/DecodeReply.h"

#include <fcntl.h>
#include <glib.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <thread>

namespace pelmora::decoder {

using platform::CheckedReply;
using platform::checkReply;
using platform::DecodeReply;
using platform::DecodeRequest;
using platform::DecoderExit;
using platform::FileDescriptor;

namespace {

/// 2 × 1 pixels, red and blue, stored so that they must be turned to the right.
DecodedPicture redAndBlue() {
  DecodedPicture picture;
  picture.facts = {.format = "JPEG", .storedSize = {2, 1}, .orientation = 6};
  picture.raster.format = {.size = {2, 1}};
  for (const int byte : {255, 0, 0, 0, 0, 255}) {
    picture.raster.bytes.push_back(static_cast<std::byte>(byte));
  }
  return picture;
}

/// The other side: one end of the socket, and requests over it.
class DecodeServerTest : public testing::Test {
 protected:
  DecodeServerTest() {
    std::array<int, 2> ends{};
    socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data());
    ours = FileDescriptor(ends[0]);
    theirs = FileDescriptor(ends[1]);
  }

  void send(const void* bytes, std::size_t size, const FileDescriptor& file) const {
    const std::span all(static_cast<const std::byte*>(bytes), size);
    ASSERT_EQ(platform::sendMessage(ours.get(), all, file.get()), 0);
  }
  void ask(const DecodeRequest& request) const {
    send(&request, sizeof request, FileDescriptor(open("/dev/null", O_RDONLY | O_CLOEXEC)));
  }

  [[nodiscard]] Result<CheckedReply> reply(const DecodeRequest& request) const {
    std::array<std::byte, sizeof(DecodeReply)> bytes{};
    auto received = platform::receiveMessage(ours.get(), bytes, platform::Waiting::no);
    if (received.error != 0) return Error{"no reply"};
    return checkReply(std::move(received.message), request);
  }

  /// What the server makes of all that was sent.
  DecoderExit serve(const DecodeServer::Decode& decode, const RetirementAge& age = {}) {
    shutdown(ours.get(), SHUT_WR);
    return DecodeServer(theirs.get(), decode, age).run();
  }

  FileDescriptor ours;
  FileDescriptor theirs;
};

const DecodeServer::Decode kRedAndBlue = [](int, int) -> Result<DecodedPicture> {
  return redAndBlue();
};

}  // namespace

TEST_F(DecodeServerTest, endsWhenTheOtherSideCloses) {
  EXPECT_EQ(serve(kRedAndBlue), DecoderExit::done);
}

TEST_F(DecodeServerTest, handsOverThePictureUpright) {
  const DecodeRequest request{.serial = 3, .longestSide = 100, .deadlineSeconds = 10};
  ask(request);
  EXPECT_EQ(serve(kRedAndBlue), DecoderExit::done);
  const auto answer = reply(request);
  ASSERT_TRUE(answer.ok()) << answer.error().message;
  ASSERT_TRUE(answer->picture.ok()) << answer->picture.error().message;
  EXPECT_FALSE(answer->isLeaving);
  const platform::InspectedPicture& picture = *answer->picture;
  EXPECT_EQ(picture.format, "JPEG");
  EXPECT_EQ(picture.profile, "sRGB");
  EXPECT_EQ(picture.orientation, 6);
  EXPECT_EQ(picture.storedSize, (PixelSize{2, 1}));
  EXPECT_EQ(picture.image.size, (Size{1, 2}));
  EXPECT_TRUE(picture.image.pixels->opaque);
  const platform::SharedBytes& bytes = picture.image.pixels->bytes;
  EXPECT_EQ(std::vector(bytes.begin(), bytes.end()),
            (std::vector<std::uint8_t>{0, 0, 255, 255, 255, 0, 0, 255}));
}

TEST_F(DecodeServerTest, saysWhyAPictureCannotBeShown) {
  const DecodeRequest request{.serial = 1, .longestSide = 100, .deadlineSeconds = 10};
  ask(request);
  EXPECT_EQ(serve([](int, int) { return Error{"it is " + std::string(500, 'x')}; }),
            DecoderExit::done);
  const auto answer = reply(request);
  ASSERT_TRUE(answer.ok()) << answer.error().message;
  EXPECT_EQ(answer->picture.error().message, "it is " + std::string(249, 'x'));
}

TEST_F(DecodeServerTest, answersOneRequestAfterAnother) {
  std::vector<int> asked;
  for (int i = 1; i <= 3; ++i) {
    ask({.serial = static_cast<std::uint32_t>(i), .longestSide = 10 * i, .deadlineSeconds = 10});
  }
  EXPECT_EQ(serve([&asked](int, int longestSide) -> Result<DecodedPicture> {
              asked.push_back(longestSide);
              return redAndBlue();
            }),
            DecoderExit::done);
  EXPECT_EQ(asked, (std::vector<int>{10, 20, 30}));
  for (int i = 1; i <= 3; ++i) {
    EXPECT_TRUE(reply({.serial = static_cast<std::uint32_t>(i), .longestSide = 10 * i}).ok());
  }
}

TEST_F(DecodeServerTest, giveEachPictureALimitOfTime) {
  ask({.serial = 1, .longestSide = 100, .deadlineSeconds = 10});
  unsigned seconds = 0;
  rlimit limit{};
  EXPECT_EQ(serve([&](int, int) -> Result<DecodedPicture> {
              seconds = alarm(0);
              getrlimit(RLIMIT_CPU, &limit);
              return Error{"it is damaged"};
            }),
            DecoderExit::done);
  EXPECT_GE(seconds, 10U);
  EXPECT_LE(seconds, 15U);
  EXPECT_NE(limit.rlim_cur, RLIM_INFINITY);
  EXPECT_EQ(alarm(0), 0U);
}

TEST_F(DecodeServerTest, leavesWhenItIsOld) {
  const DecodeRequest request{.serial = 1, .longestSide = 100, .deadlineSeconds = 10};
  ask(request);
  ask(request);
  EXPECT_EQ(serve(kRedAndBlue, {.cpuSeconds = 0}), DecoderExit::done);
  const auto answer = reply(request);
  ASSERT_TRUE(answer.ok());
  EXPECT_TRUE(answer->isLeaving);
  EXPECT_TRUE(answer->picture.ok());
  EXPECT_EQ(reply(request).error().message, "no reply");
}

TEST_F(DecodeServerTest, leavesWhenItHasGrown) {
  const DecodeRequest request{.serial = 1, .longestSide = 100, .deadlineSeconds = 10};
  ask(request);
  void* kept = nullptr;
  constexpr std::size_t kKept = 8 << 20;
  EXPECT_EQ(serve(
                [&kept](int, int) -> Result<DecodedPicture> {
                  kept = mmap(nullptr, kKept, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
                  return redAndBlue();
                },
                {.grownBytes = kKept / 2}),
            DecoderExit::done);
  munmap(kept, kKept);
  EXPECT_TRUE(reply(request)->isLeaving);
}

TEST_F(DecodeServerTest, endsOverARequestThatIsNone) {
  const DecodeRequest good{.serial = 1, .longestSide = 100, .deadlineSeconds = 10};
  for (const int bad : {0, -1, 1 << 30}) {
    DecodeRequest request = good;
    request.longestSide = bad;
    ask(request);
    request = good;
    request.deadlineSeconds = bad;
    ask(request);
  }
  DecodeRequest other = good;
  other.magic = platform::kReplyMagic;
  ask(other);
  send(&good, sizeof good - 1, FileDescriptor(open("/dev/null", O_RDONLY | O_CLOEXEC)));
  send(&good, sizeof good, {});
  shutdown(ours.get(), SHUT_WR);
  for (int i = 0; i < 9; ++i) {
    EXPECT_EQ(DecodeServer(theirs.get(), kRedAndBlue).run(), DecoderExit::brokenRequest) << i;
  }
  EXPECT_EQ(DecodeServer(theirs.get(), kRedAndBlue).run(), DecoderExit::done);
  EXPECT_EQ(reply(good).error().message, "no reply");
}

#if !defined(__SANITIZE_ADDRESS__)  // which ends the process in its own way
TEST(DecodeServer, endsWithAStatusOfItsOwnWithoutMemory) {
  const auto statusAfter = [](void* (*allocate)(std::size_t)) {
    const pid_t child = fork();
    if (child == 0) {
      endWhenOutOfMemory();
      _exit(allocate(std::size_t{1} << 60) ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
  };
  const int expected = W_EXITCODE(static_cast<int>(DecoderExit::outOfMemory), 0);
  EXPECT_EQ(statusAfter([](std::size_t size) { return ::operator new(size); }), expected);
  EXPECT_EQ(statusAfter([](std::size_t size) -> void* { return g_malloc(size); }), expected);
}
#endif

}  // namespace pelmora::decoder
