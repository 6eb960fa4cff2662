#pragma once

#include "platform/FileDescriptor.h"
#include "platform/metadata/FileMetadata.h"
#include "platform/metadata/MetadataProtocol.h"
#include "sandbox/MemoryUse.h"
#include "sandbox/TimeLimit.h"
#include "shared/Result.h"

#include <cstdint>
#include <ctime>
#include <functional>
#include <optional>

namespace pelmora::inspector {

/// When an inspector retires, so that weeks of files leave it as small as it began.
struct RetirementAge {
  std::int64_t grownBytes = 128 << 20;
  std::int64_t cpuSeconds = 10 * 60;
};

/// Greets, and then answers requests for what is embedded in files
/// (`platform/metadata/MetadataProtocol.h`), one after another, until the other side closes its end
/// or it is time to retire. Each file has a limit of time, after which the process ends.
/// Thread: one. Does not own the socket. Errors: a request that breaks the protocol ends it.
class InspectServer {
 public:
  using Answer = Result<platform::metadata::FileMetadata>;
  using Read = std::function<Answer(int descriptor)>;

  InspectServer(int socket, Read read, const RetirementAge& age = {});

  [[nodiscard]] platform::metadata::InspectorExit run();

 private:
  enum class Receiving { request, end, broken };

  Receiving receive(std::uint32_t& serial, platform::FileDescriptor& file);
  void renewLimit();
  bool answer(std::uint32_t serial, int descriptor);
  [[nodiscard]] bool isOld() const;

  const int _socket;
  const Read _read;
  const RetirementAge _age;
  const sandbox::MemoryUse _memory;
  const sandbox::MemoryUse::Bytes _atStart;
  std::optional<sandbox::TimeLimit> _limit;  // while there is work
  std::time_t _limitedAt = 0;
  std::uint32_t _answered = 0;
  bool _isLeaving = false;
};

}  // namespace pelmora::inspector
