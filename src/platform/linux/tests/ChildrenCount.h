#pragma once

#include <sys/types.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

namespace pelmora::platform {

/// How many descriptors this process has open.
inline std::size_t openDescriptors() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& each : std::filesystem::directory_iterator("/proc/self/fd")) {
    ++count;
  }
  return count;
}

/// Whether this process has a child, alive or not yet waited for.
inline bool hasChildren() {
  siginfo_t facts{};
  return waitid(P_ALL, 0, &facts, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

/// How many mappings of decoded pictures this process has.
inline std::size_t mappedPictures() {
  std::ifstream maps("/proc/self/maps");
  std::size_t count = 0;
  for (std::string line; std::getline(maps, line);) {
    if (line.find("/memfd:pixels") != std::string::npos) ++count;
  }
  return count;
}

}  // namespace pelmora::platform
