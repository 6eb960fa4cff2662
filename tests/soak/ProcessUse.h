#pragma once

#include <string>
#include <vector>

namespace pelmora::soak {

/// What this process holds at a moment.
struct ProcessUse {
  long kilobytes = 0;  // resident
  long descriptors = 0;
  long threads = 0;

  [[nodiscard]] static ProcessUse now();
};

/// What grew from the second third of the samples to the last, by their medians, a line each: any
/// descriptor and any thread, and of the memory more than 5 % and 8 MiB.
[[nodiscard]] std::vector<std::string> growth(const std::vector<ProcessUse>& samples);

}  // namespace pelmora::soak
