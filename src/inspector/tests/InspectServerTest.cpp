#include "inspector/InspectServer.h"

#include "inspector/tests/PaintedFile.h"
#include "platform/DescriptorMessage.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace pelmora::inspector {

using platform::FileDescriptor;
using platform::metadata::decodeMetadata;
using platform::metadata::FileMetadata;
using platform::metadata::InspectorExit;
using platform::metadata::InspectOutcome;
using platform::metadata::InspectReply;
using platform::metadata::InspectRequest;
using platform::metadata::kMaxReplyBytes;

namespace {

struct Reply {
  InspectReply head;
  std::vector<std::byte> body;
};

FileMetadata rated(std::int64_t rating) {
  FileMetadata metadata;
  metadata.set("kMDItemStarRating", {rating});
  return metadata;
}

const InspectServer::Read kFour = [](int) -> InspectServer::Answer { return rated(4); };

/// The other side: one end of the socket, and requests over it.
class InspectServerTest : public testing::Test {
 protected:
  InspectServerTest() {
    std::array<int, 2> ends{};
    socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data());
    ours = FileDescriptor(ends[0]);
    theirs = FileDescriptor(ends[1]);
  }

  template <typename T>
  void send(const T& message, const FileDescriptor& file) const {
    ASSERT_EQ(platform::sendMessage(ours.get(), std::as_bytes(std::span(&message, 1)), file.get()),
              0);
  }
  void ask(std::uint32_t serial) const { send(InspectRequest{.serial = serial}, fileOf({1})); }

  /// Everything that the server said.
  [[nodiscard]] std::vector<Reply> replies() const {
    std::vector<Reply> all;
    std::vector<std::byte> buffer(kMaxReplyBytes + 1);
    for (;;) {
      const auto received = platform::receiveMessage(ours.get(), buffer, platform::Waiting::no);
      const auto bytes = received.message.bytes;
      if (received.error != 0 || bytes.size() < sizeof(InspectReply)) return all;
      Reply reply;
      std::memcpy(&reply.head, bytes.data(), sizeof reply.head);
      reply.body.assign(bytes.begin() + sizeof reply.head, bytes.end());
      all.push_back(std::move(reply));
    }
  }

  /// What the server makes of all that was sent.
  InspectorExit serve(const InspectServer::Read& read, const RetirementAge& age = {}) const {
    shutdown(ours.get(), SHUT_WR);
    return InspectServer(theirs.get(), read, age).run();
  }

  FileDescriptor ours;
  FileDescriptor theirs;
};

}  // namespace

TEST_F(InspectServerTest, greetsAndAnswersInOrder) {
  ask(1);
  ask(2);
  EXPECT_EQ(serve(kFour), InspectorExit::done);
  const auto said = replies();
  ASSERT_EQ(said.size(), 3U);
  for (std::uint32_t i = 0; i < 3; ++i) {
    EXPECT_EQ(said[i].head.magic, platform::metadata::kInspectedMagic);
    EXPECT_EQ(said[i].head.serial, i);
    EXPECT_EQ(said[i].head.outcome, InspectOutcome::read);
    EXPECT_EQ(said[i].head.isLeaving, 0U);
  }
  EXPECT_TRUE(said[0].body.empty());
  EXPECT_EQ(*decodeMetadata(said[1].body), rated(4));
}

TEST_F(InspectServerTest, saysWhatIsWrong) {
  ask(1);
  EXPECT_EQ(serve([](int) -> InspectServer::Answer { return Error{"it is damaged"}; }),
            InspectorExit::done);
  const auto said = replies();
  ASSERT_EQ(said.size(), 2U);
  EXPECT_EQ(said[1].head.outcome, InspectOutcome::failed);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(said[1].body.data()), said[1].body.size()),
            "it is damaged");
}

TEST_F(InspectServerTest, limitsTheTimeWhileThereIsWork) {
  ask(1);
  unsigned left = 0;
  EXPECT_EQ(serve([&left](int) -> InspectServer::Answer {
              left = alarm(0);
              return FileMetadata();
            }),
            InspectorExit::done);
  EXPECT_GT(left, 0U);
  EXPECT_LE(left, 20U);
  EXPECT_EQ(alarm(0), 0U);
  rlimit limit{};
  getrlimit(RLIMIT_CPU, &limit);
  EXPECT_EQ(limit.rlim_cur, limit.rlim_max);
}

TEST_F(InspectServerTest, leavesWhenItHasGrownOld) {
  // No more than some fit into the socket at a time: each answer asks again.
  std::uint32_t asked = 1;
  ask(asked);
  std::vector<Reply> said;
  const InspectServer::Read readAndAskAgain = [&](int) -> InspectServer::Answer {
    for (Reply& reply : replies()) said.push_back(std::move(reply));
    if (asked < 100) ask(++asked);
    return rated(4);
  };
  EXPECT_EQ(InspectServer(theirs.get(), readAndAskAgain, {.grownBytes = -1}).run(),
            InspectorExit::done);
  for (Reply& reply : replies()) said.push_back(std::move(reply));
  EXPECT_LT(asked, 100U);
  EXPECT_EQ(said.back().head.isLeaving, 1U);
  EXPECT_EQ(*decodeMetadata(said.back().body), rated(4));
  EXPECT_EQ(std::count_if(said.begin(), said.end(),
                          [](const Reply& reply) { return reply.head.isLeaving != 0; }),
            1);
}

TEST_F(InspectServerTest, endsOverRequestsThatAreBroken) {
  send(InspectRequest{.magic = 7, .serial = 1}, fileOf({1}));
  EXPECT_EQ(serve(kFour), InspectorExit::brokenRequest);
}

TEST_F(InspectServerTest, endsOverRequestsWithoutASerialNumber) {
  ask(0);
  EXPECT_EQ(serve(kFour), InspectorExit::brokenRequest);
}

TEST_F(InspectServerTest, endsOverRequestsWithoutAFile) {
  send(InspectRequest{.serial = 1}, FileDescriptor());
  EXPECT_EQ(serve(kFour), InspectorExit::brokenRequest);
}

TEST_F(InspectServerTest, endsOverRequestsOfAWrongLength) {
  send(std::array<InspectRequest, 2>{}, fileOf({1}));
  EXPECT_EQ(serve(kFour), InspectorExit::brokenRequest);
}

TEST_F(InspectServerTest, endsWhenNobodyListens) {
  ours = {};
  EXPECT_EQ(InspectServer(theirs.get(), kFour).run(), InspectorExit::done);
}

}  // namespace pelmora::inspector
