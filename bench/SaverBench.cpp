#include "Benches.h"
#include "Report.h"
#include "Trees.h"

#include "host/SamplePictures.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#ifndef PELMORA_PROGRAM
#error "PELMORA_PROGRAM names the program that is measured"
#endif

namespace pelmora::bench {

namespace {

/// The program itself, running in a window of full HD, its log coming through a pipe.
class RunningSaver {
 public:
  explicit RunningSaver(const Workplace& place) {
    int channel[2];
    if (pipe(channel) != 0) std::exit(1);
    _start = std::chrono::steady_clock::now();
    _child = fork();
    if (_child == 0) {
      setenv("HOME", place.path().c_str(), 1);
      setenv("XDG_CONFIG_HOME", (place.path() / "config").c_str(), 1);
      setenv("XDG_CACHE_HOME", (place.path() / "cache").c_str(), 1);
      dup2(channel[1], 2);
      execl(PELMORA_PROGRAM, PELMORA_PROGRAM, "window", "--size", "1920x1080", "--verbose",
            static_cast<char*>(nullptr));
      _exit(1);
    }
    close(channel[1]);
    _log = channel[0];
  }
  ~RunningSaver() {
    kill(_child, SIGTERM);
    waitpid(_child, nullptr, 0);
    close(_log);
  }

  /// Seconds from the start to the log line that contains `part`; 0 when it did not come in time.
  double secondsTo(const char* part, double limit) {
    std::string lines;
    while (elapsed() < limit) {
      pollfd ready{_log, POLLIN, 0};
      if (poll(&ready, 1, 100) <= 0) continue;
      char bytes[4096];
      const ssize_t size = read(_log, bytes, sizeof bytes);
      if (size <= 0) return 0;
      lines.append(bytes, static_cast<std::size_t>(size));
      if (lines.find(part) != std::string::npos) return elapsed();
    }
    return 0;
  }

  /// Processor time used so far, in seconds.
  [[nodiscard]] double processorSeconds() const {
    std::ifstream file("/proc/" + std::to_string(_child) + "/stat");
    std::string text{std::istreambuf_iterator<char>(file), {}};
    std::size_t at = text.rfind(')');
    for (int field = 0; field < 12 && at != std::string::npos; ++field) at = text.find(' ', at + 1);
    if (at == std::string::npos) return 0;
    char* end = nullptr;
    const double user = std::strtod(text.c_str() + at, &end);
    const double system = std::strtod(end, nullptr);
    return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
  }

  [[nodiscard]] double elapsed() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - _start).count();
  }

 private:
  std::chrono::steady_clock::time_point _start;
  pid_t _child = 0;
  int _log = -1;
};

bool hasDisplay() {
  if (std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY")) return true;
  std::puts("# left out, as it needs a display");
  return false;
}

/// One of the sample pictures that the program paints.
FilePath paintPicture(const Workplace& place) {
  const FilePath samples = place.mkdir("samples");
  if (!host::paintSamplePictures(samples)) std::exit(1);
  return FilePath(std::filesystem::directory_iterator(samples.bytes())->path().string());
}

/// A home with pictures in it, painted by the program.
void fillHome(const Workplace& place) {
  setenv("XDG_CONFIG_HOME", (place.path() / "config").c_str(), 1);
  secondsOfCommand({PELMORA_PROGRAM, "defaults", "write", "Delay", "3600"});
  secondsOfCommand({PELMORA_PROGRAM, "sources", "add", place.path().bytes() + "/pictures"});
}

}  // namespace

void benchAtRest() {
  if (!hasDisplay()) return;
  const Workplace place;
  place.mkdir("cache");
  place.mkdir("pictures");
  makeTree(place.path() / "pictures", 1, 1, paintPicture(place));
  fillHome(place);
  constexpr double kMeasured = 20;  // seconds
  RunningSaver saver(place);
  saver.secondsTo("Pelmora: no such line", 5);  // let it settle
  const double before = saver.processorSeconds();
  const double from = saver.elapsed();
  saver.secondsTo("Pelmora: no such line", from + kMeasured);
  const double used = saver.processorSeconds() - before;
  report({.name = "rest.processor",
          .value = used / (saver.elapsed() - from),
          .unit = "cores",
          .most = 0.005});
}

void benchFirstPicture() {
  if (!hasDisplay()) return;
  constexpr int kRounds = 5;
  const Workplace place;
  place.mkdir("cache");
  place.mkdir("pictures");
  makeTree(place.path() / "pictures", 10'000, 100, paintPicture(place));
  fillHome(place);
  {
    RunningSaver filling(place);  // fills the folder cache
    filling.secondsTo("Pelmora: The first picture is up.", 60);
    filling.secondsTo("Pelmora: no such line", filling.elapsed() + 20);
  }
  std::vector<double> starts;
  for (int round = 0; round < kRounds; ++round) {
    RunningSaver saver(place);
    starts.push_back(saver.secondsTo("Pelmora: The first picture is up.", 30));
  }
  report(
      {.name = "first-picture.1M-warm-cache", .value = median(starts), .unit = "s", .most = 0.5});
}

}  // namespace pelmora::bench
