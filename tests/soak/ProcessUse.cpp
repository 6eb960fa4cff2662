#include "ProcessUse.h"

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace pelmora::soak {

namespace {

// The address sanitizer keeps what was freed for a while, and its memory says nothing.
#ifdef __SANITIZE_ADDRESS__
constexpr bool kKeepsFreed = true;
#else
constexpr bool kKeepsFreed = false;
#endif

constexpr double kMostGrowth = 0.05;
constexpr long kMostKilobytes = 8192;
constexpr long kMostHeapKilobytes = 256;

long statusNumber(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(name + ":")) return std::stol(line.substr(name.size() + 1));
  }
  return 0;
}

long entriesOf(const char* folder) {
  const std::filesystem::directory_iterator entries(folder);
  // One of the descriptors is that of the listing.
  return std::distance(begin(entries), end(entries)) - 1;
}

long heapInUse() {
  const struct mallinfo2 heap = mallinfo2();
  return static_cast<long>((heap.uordblks + heap.hblkhd) / 1024);
}

long childrenOfThisProcess() {
  long count = 0;
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream children(thread.path() / "children");
    count += std::distance(std::istream_iterator<long>(children), {});
  }
  return count;
}

long median(const std::vector<ProcessUse>& samples, std::size_t from, std::size_t to,
            long ProcessUse::*member) {
  std::vector<long> values;
  for (std::size_t i = from; i < to; ++i) values.push_back(samples[i].*member);
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

ProcessUse ProcessUse::now() {
  // What was freed is nobody's, wherever the allocator keeps it.
  malloc_trim(0);
  return {.kilobytes = statusNumber("VmRSS"),
          .heapKilobytes = heapInUse(),
          .descriptors = entriesOf("/proc/self/fd"),
          .threads = statusNumber("Threads"),
          .children = childrenOfThisProcess()};
}

std::vector<std::string> growth(const std::vector<ProcessUse>& samples) {
  std::vector<std::string> grown;
  const std::size_t third = samples.size() / 3;
  const std::size_t twoThirds = samples.size() - std::max<std::size_t>(third, 1);
  if (twoThirds <= third) return grown;
  const auto compare = [&](const char* what, long ProcessUse::*member, auto allowance) {
    const long before = median(samples, third, twoThirds, member);
    const long after = median(samples, twoThirds, samples.size(), member);
    if (after > before + allowance(before)) {
      grown.push_back(std::string(what) + " grew from " + std::to_string(before) + " to " +
                      std::to_string(after));
    }
  };
  const auto none = [](long) { return 0L; };
  if (!kKeepsFreed && samples.size() >= kFewestSamples) {
    compare("the memory (KiB)", &ProcessUse::kilobytes, [](long before) {
      return std::max(kMostKilobytes, static_cast<long>(static_cast<double>(before) * kMostGrowth));
    });
    compare("the heap (KiB)", &ProcessUse::heapKilobytes, [](long) { return kMostHeapKilobytes; });
  }
  compare("the number of descriptors", &ProcessUse::descriptors, none);
  compare("the number of threads", &ProcessUse::threads, none);
  compare("the number of children", &ProcessUse::children, none);
  return grown;
}

}  // namespace pelmora::soak
