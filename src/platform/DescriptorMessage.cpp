#include "platform/DescriptorMessage.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace pelmora::platform {

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

}  // namespace pelmora::platform
