#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace pelmora::soak {

/// What this process holds at a moment.
struct ProcessUse {
  long kilobytes = 0;      // resident
  long heapKilobytes = 0;  // allocated and not freed
  long descriptors = 0;
  long threads = 0;
  long children = 0;  // processes, of the decoder and the inspector

  [[nodiscard]] static ProcessUse now();
};

/// Fewer samples say nothing of memory.
inline constexpr std::size_t kFewestSamples = 6;

/// What grew from the second third of the samples to the last, by their medians, a line each: any
/// descriptor, thread and child; and, where there are samples enough, of the heap more than 256
/// KiB, of the memory more than 5 % and 8 MiB.
[[nodiscard]] std::vector<std::string> growth(const std::vector<ProcessUse>& samples);

}  // namespace pelmora::soak
