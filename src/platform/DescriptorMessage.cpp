#include "platform/DescriptorMessage.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace pelmora::platform {

namespace {

// More than any message of ours has, to see what a wrong one brings.
constexpr std::size_t kMaxDescriptors = 8;

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

}  // namespace

int sendMessage(int socket, std::span<const std::byte> bytes, int descriptor) {
  iovec part{const_cast<std::byte*>(bytes.data()), bytes.size()};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof descriptor)> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  if (descriptor >= 0) {
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof descriptor);
    std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
  }
  ssize_t sent = 0;
  do {
    sent = sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT);
  } while (sent < 0 && errno == EINTR);
  return sent < 0 ? errno : 0;
}

Received receiveMessage(int socket, std::span<std::byte> buffer, Waiting waiting) {
  const int flags = MSG_CMSG_CLOEXEC | (waiting == Waiting::no ? MSG_DONTWAIT : 0);
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
    length = recvmsg(socket, &message, flags);
  } while (length < 0 && errno == EINTR);
  if (length < 0) return {errno, {}};
  const bool isCut = (message.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) != 0;
  return {0, {buffer.first(static_cast<std::size_t>(length)), isCut, descriptorsOf(message)}};
}

}  // namespace pelmora::platform
