#pragma once

#include <cstddef>
#include <span>

namespace pelmora::platform {

/// Sends a message that is kept whole, and with it a descriptor unless that is negative. Does not
/// wait for the other side to read. Gives back an error number, or 0. Thread: any.
[[nodiscard]] int sendMessage(int socket, std::span<const std::byte> bytes, int descriptor);

}  // namespace pelmora::platform
