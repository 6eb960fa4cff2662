#include "Report.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>

extern char** environ;

namespace pelmora::bench {

void report(const Figure& figure) {
  const bool compared = !figure.base.empty();
  const double judged = compared ? figure.value / figure.baseValue : figure.value;
  std::string ratio = "-";
  std::string target = "-";
  std::string verdict = "ok";
  char text[64];
  if (compared) {
    std::snprintf(text, sizeof text, "%.3g", judged);
    ratio = text;
  }
  if (figure.most || figure.least) {
    std::snprintf(text, sizeof text, "%s%g",
                  figure.most ? "<=" : ">=", figure.most ? *figure.most : *figure.least);
    target = text;
    const bool met = figure.most ? judged <= *figure.most : judged >= *figure.least;
    verdict = met ? "ok" : "short";
  }
  std::printf("%-34s %10.4g %-8s %6s %-22s %8s %s\n", figure.name.c_str(), figure.value,
              figure.unit.c_str(), ratio.c_str(), compared ? figure.base.c_str() : "-",
              target.c_str(), verdict.c_str());
  std::fflush(stdout);
}

double secondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

double secondsOfCommand(const std::vector<std::string>& words) {
  std::vector<char*> arguments;
  for (const std::string& word : words) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  int status = -1;
  const double seconds = secondsOf([&] {
    pid_t child = 0;
    if (posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0) {
      waitpid(child, &status, 0);
    }
  });
  posix_spawn_file_actions_destroy(&actions);
  if (status != 0) {
    std::fprintf(stderr, "%s failed\n", words.front().c_str());
    std::exit(1);
  }
  return seconds;
}

}  // namespace pelmora::bench
