#include "StressRound.h"

#include "platform/fake/TemporaryFolder.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace {

using namespace pelmora;

constexpr int kUsage = 2;
constexpr int kSteps = 150;          // of main in a round
constexpr unsigned kMostHang = 120;  // seconds

struct Request {
  double seconds = 3;
  std::uint64_t seed = 1;
};

std::optional<Request> parse(int count, char** words) {
  Request request;
  for (int i = 1; i < count; i += 2) {
    if (i + 1 == count) return std::nullopt;
    const std::string name = words[i];
    char* end = nullptr;
    const double value = std::strtod(words[i + 1], &end);
    if (*end != '\0' || !(value >= 0) || value > 1e6) return std::nullopt;
    if (name == "--seconds") {
      request.seconds = value;
    } else if (name == "--seed") {
      request.seed = static_cast<std::uint64_t>(value);
    } else {
      return std::nullopt;
    }
  }
  return request;
}

/// Everything that was to be done: a number of 0 says nothing was tried.
bool report(std::uint64_t rounds, const stress::StressCounts& counts,
            const stress::StressServices& services) {
  const std::pair<const char*, std::uint64_t> all[] = {{"rounds", rounds},
                                                       {"picks", counts.picks},
                                                       {"pictures picked", counts.pictures},
                                                       {"pictures loaded", services.images.loads()},
                                                       {"lookups", counts.lookups},
                                                       {"notifications", counts.notifications},
                                                       {"calls of the cache", counts.cacheCalls},
                                                       {"changes of the tree", counts.changes},
                                                       {"loads", counts.loads},
                                                       {"unloads", counts.unloads},
                                                       {"cancellations", counts.cancellations},
                                                       {"changes of the day", counts.dayChanges},
                                                       {"filters", counts.filters},
                                                       {"lines of the log", services.log.lines()}};
  bool isAll = true;
  for (const auto& [name, count] : all) {
    std::printf("%-28s %12llu\n", name, static_cast<unsigned long long>(count));
    if (count == 0) std::printf("FAILED: there were no %s\n", name);
    isAll = isAll && count > 0;
  }
  return isAll;
}

}  // namespace

int main(int count, char** words) {
  const std::optional<Request> request = parse(count, words);
  if (!request) {
    std::fprintf(stderr, "usage: pelmora_stress [--seconds S] [--seed N]\n");
    return kUsage;
  }
  setenv("TZ", "Europe/Berlin", 1);
  const platform::TemporaryFolder caches;
  stress::StressTree tree;
  stress::StressServices services(caches.path());
  stress::StressCounts counts;
  std::uint64_t rounds = 0;
  bool isRight = true;
  const double start = services.realClock.mediaTime();
  while (isRight && services.realClock.mediaTime() - start < request->seconds) {
    alarm(kMostHang);  // ends a round in which threads wait for each other
    const std::uint64_t seed = request->seed + rounds++;
    stress::StressRound round(services, tree, counts, seed);
    for (const std::string& problem : round.run(kSteps)) {
      std::printf("FAILED with seed %llu: %s\n", static_cast<unsigned long long>(seed),
                  problem.c_str());
      isRight = false;
    }
  }
  if (services.log.failedLocks() > 0) {
    std::printf("FAILED: %llu calls of locks failed\n",
                static_cast<unsigned long long>(services.log.failedLocks()));
    isRight = false;
  }
  isRight = report(rounds, counts, services) && isRight;
  return isRight ? EXIT_SUCCESS : EXIT_FAILURE;
}
