#include "platform/DescriptorMessage.h"

#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>
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

  struct Received {
    std::string text;
    FileDescriptor descriptor;
  };
  Received receive() const {
    std::array<char, 100> bytes{};
    iovec part{bytes.data(), bytes.size()};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    const ssize_t length = recvmsg(to.get(), &message, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
    Received received{
        std::string(bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0))), {}};
    if (const cmsghdr* const header = CMSG_FIRSTHDR(&message)) {
      int descriptor = -1;
      std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
      received.descriptor = FileDescriptor(descriptor);
    }
    return received;
  }

  FileDescriptor from;
  FileDescriptor to;
};

}  // namespace

TEST_F(DescriptorMessageTest, comesWholeWithItsDescriptor) {
  const FileDescriptor file(open("/dev/null", O_RDONLY | O_CLOEXEC));
  ASSERT_EQ(send("a picture", file.get()), 0);
  const Received received = receive();
  EXPECT_EQ(received.text, "a picture");
  EXPECT_TRUE(received.descriptor.isOpen());
  EXPECT_NE(received.descriptor.get(), file.get());
}

TEST_F(DescriptorMessageTest, comesWithoutADescriptorWhereThereIsNone) {
  ASSERT_EQ(send("no", -1), 0);
  ASSERT_EQ(send("and no", -1), 0);
  const Received received = receive();
  EXPECT_EQ(received.text, "no");
  EXPECT_FALSE(received.descriptor.isOpen());
  EXPECT_EQ(receive().text, "and no");
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
