#pragma once

#include "platform/linux/IsolatedImageLoader.h"

#include <sys/types.h>

#include <optional>

namespace pelmora::bench {

/// Our own loader with its decoder, a process of its own, watched from outside. Nothing else may
/// start processes meanwhile. Thread: one. Errors: a load that fails ends the program.
class DecoderChild {
 public:
  DecoderChild();

  platform::Image load(const FilePath& file, int longestSide);

  /// Processor time of this process and of the decoder so far, in seconds.
  [[nodiscard]] double processorSeconds() const;
  /// The decoder's memory by a line of its status file ("VmRSS", "VmHWM"), in megabytes.
  [[nodiscard]] double megabytes(const char* field) const;

 private:
  [[nodiscard]] std::optional<pid_t> process() const;

  platform::IsolatedImageLoader _loader;
};

/// Processor time of this process alone, in seconds.
[[nodiscard]] double ownProcessorSeconds();

}  // namespace pelmora::bench
