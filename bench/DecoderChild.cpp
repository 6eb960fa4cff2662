#include "DecoderChild.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

#ifndef PELMORA_DECODER
#error "PELMORA_DECODER names the program that decodes"
#endif

namespace pelmora::bench {

namespace {

double secondsOf(clockid_t clock) {
  timespec time{};
  if (clock_gettime(clock, &time) != 0) return 0;
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace

DecoderChild::DecoderChild() : _loader({.program = FilePath(PELMORA_DECODER)}) {}

platform::Image DecoderChild::load(const FilePath& file, int longestSide) {
  Result<platform::Image> image = _loader.load(file, longestSide);
  if (image) return *std::move(image);
  std::fprintf(stderr, "%s: %s\n", file.c_str(), image.error().message.c_str());
  std::exit(1);
}

std::optional<pid_t> DecoderChild::process() const {
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
    std::ifstream children(thread.path() / "children");
    pid_t child = 0;
    if (children >> child) return child;
  }
  return std::nullopt;
}

double DecoderChild::processorSeconds() const {
  const std::optional<pid_t> child = process();
  clockid_t clock = 0;
  if (!child || clock_getcpuclockid(*child, &clock) != 0) return ownProcessorSeconds();
  return ownProcessorSeconds() + secondsOf(clock);
}

double DecoderChild::megabytes(const char* field) const {
  const std::optional<pid_t> child = process();
  if (!child) return 0;
  std::ifstream status("/proc/" + std::to_string(*child) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(field))
      return std::strtod(line.c_str() + line.find(':') + 1, nullptr) / 1024;
  }
  return 0;
}

double ownProcessorSeconds() { return secondsOf(CLOCK_PROCESS_CPUTIME_ID); }

}  // namespace pelmora::bench
