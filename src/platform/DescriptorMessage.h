#pragma once

#include "platform/FileDescriptor.h"

#include <cstddef>
#include <span>
#include <vector>

namespace pelmora::platform {

/// Sends a message that is kept whole, and with it a descriptor unless that is negative. Does not
/// wait for the other side to read. Gives back an error number, or 0. Thread: any.
[[nodiscard]] int sendMessage(int socket, std::span<const std::byte> bytes, int descriptor);

/// A message as the socket gave it. Owns the descriptors that came with it, expected or not.
struct ReceivedMessage {
  std::span<const std::byte> bytes;
  bool isCut = false;  // the message or its descriptors did not fit
  std::vector<FileDescriptor> descriptors;
};

struct Received {
  int error = 0;  // an error number; 0 with no bytes: the socket was closed
  ReceivedMessage message;
};

enum class Waiting { no, untilThere };

/// Receives a message into `buffer`, which `bytes` then points into, and at most eight descriptors.
/// Thread: any.
[[nodiscard]] Received receiveMessage(int socket, std::span<std::byte> buffer, Waiting waiting);

}  // namespace pelmora::platform
