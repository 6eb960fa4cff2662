#pragma once

#include "decoder/PictureDecoder.h"
#include "platform/DecodeProtocol.h"
#include "platform/FileDescriptor.h"
#include "sandbox/MemoryUse.h"

#include <functional>
#include <optional>

namespace pelmora::decoder {

/// When a decoder retires, so that weeks of pictures leave it as small as it began.
struct RetirementAge {
  std::int64_t grownBytes = 192 << 20;
  std::int64_t cpuSeconds = 10 * 60;
};

/// Answers requests for pictures (`platform/DecodeProtocol.h`), one after another, until the other
/// side closes its end or it is time to retire. Each picture has a limit of time: this process ends
/// a little after nobody waits for the reply any more.
/// Thread: one. Owns neither the socket nor the memory that it hands over. Errors: a request that
/// breaks the protocol ends the answering.
class DecodeServer {
 public:
  using Decode = std::function<Result<DecodedPicture>(int descriptor, int longestSide)>;

  DecodeServer(int socket, Decode decode, const RetirementAge& age = {});

  [[nodiscard]] platform::DecoderExit run();

 private:
  struct Request {
    platform::DecodeRequest asked;
    platform::FileDescriptor file;
  };
  enum class Reading { request, end, broken };

  Reading read(Request& request) const;
  bool answer(const Request& request);
  bool isOld() const;

  const int _socket;
  const Decode _decode;
  const RetirementAge _age;
  const sandbox::MemoryUse _memory;
  const sandbox::MemoryUse::Bytes _atStart;
  bool _isLeaving = false;
};

/// From now on the process ends with `DecoderExit::outOfMemory` where the C++ library or GLib find
/// no memory, instead of being aborted.
void endWhenOutOfMemory();

}  // namespace pelmora::decoder
