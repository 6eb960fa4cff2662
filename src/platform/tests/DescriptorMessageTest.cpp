#include "platform/DescriptorMessage.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <string>

namespace pelmora::platform {

namespace {

class DescriptorMessageTest : public testing::Test {
 protected:
  DescriptorMessageTest() {
    std::array<int, 2> ends{};
    socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data());
    from = FileDescriptor(ends[0]);
    to = FileDescriptor(ends[1]);
  }

  int send(const std::string& text, int descriptor) const {
    return sendMessage(from.get(), std::as_bytes(std::span(text)), descriptor);
  }

  Received receive() { return receiveMessage(to.get(), buffer, Waiting::no); }
  static std::string textOf(const Received& received) {
    const auto bytes = received.message.bytes;
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }

  std::array<std::byte, 10> buffer{};
  FileDescriptor from;
  FileDescriptor to;
};

}  // namespace

TEST_F(DescriptorMessageTest, comesWholeWithItsDescriptor) {
  const FileDescriptor file(open("/dev/null", O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(send("a picture", file.get()), 0);
  const Received received = receive();
  EXPECT_EQ(textOf(received), "a picture");
  EXPECT_FALSE(received.message.isCut);
  ASSERT_EQ(received.message.descriptors.size(), 1U);
  EXPECT_NE(received.message.descriptors[0].get(), file.get());
}

TEST_F(DescriptorMessageTest, comesWithoutADescriptorWhereThereIsNone) {
  ASSERT_EQ(send("no", -1), 0);
  ASSERT_EQ(send("and no", -1), 0);
  const Received received = receive();
  EXPECT_EQ(textOf(received), "no");
  EXPECT_TRUE(received.message.descriptors.empty());
  EXPECT_EQ(textOf(receive()), "and no");
}

TEST_F(DescriptorMessageTest, tellsWhenItDidNotFit) {
  ASSERT_EQ(send("longer than ten", -1), 0);
  const Received received = receive();
  EXPECT_TRUE(received.message.isCut);
  EXPECT_EQ(textOf(received), "longer tha");
}

TEST_F(DescriptorMessageTest, tellsWhenThereIsNothing) {
  EXPECT_EQ(receive().error, EAGAIN);
  from = {};
  const Received received = receive();
  EXPECT_EQ(received.error, 0);
  EXPECT_TRUE(received.message.bytes.empty());
}

TEST_F(DescriptorMessageTest, tellsWhenNobodyIsThere) {
  to = {};
  EXPECT_EQ(send("a", -1), EPIPE);
}

TEST_F(DescriptorMessageTest, doesNotWaitForAReader) {
  int error = 0;
  for (int i = 0; i < 100'000 && error == 0; ++i) error = send("more", -1);
  EXPECT_EQ(error, EAGAIN);
}

}  // namespace pelmora::platform
