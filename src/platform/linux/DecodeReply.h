#pragma once

#include "platform/DecodeProtocol.h"
#include "platform/DescriptorMessage.h"
#include "platform/linux/InspectedPicture.h"

namespace pelmora::platform {

/// A reply that keeps to the protocol.
struct CheckedReply {
  Result<InspectedPicture> picture;  // or what the decoder says is wrong with the file
  bool isLeaving = false;
};

/// Checks everything that the decoder says, as a hostile file may have taken it over: sizes, texts,
/// and that the memory with the pixels is exactly as large as it must be and can neither shrink nor
/// change any more. The pixels are shown from that memory, without a copy.
/// Errors: what breaks the protocol, for a person; then nothing more should be asked of that
/// decoder. Thread: any.
[[nodiscard]] Result<CheckedReply> checkReply(ReceivedMessage message,
                                              const DecodeRequest& request);

}  // namespace pelmora::platform
