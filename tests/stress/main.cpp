#include "StressRound.h"

#include "platform/fake/TemporaryFolder.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

namespace {

using namespace pelmora;

constexpr int kUsage = 2;
constexpr int kSteps = 150;          // of main in a round
constexpr unsigned kMostHang = 120;  // seconds
// Seconds beyond those asked for, until everything was done once: on a busy machine the first
// rounds may end before any folder was read.
constexpr double kMostPatience = 60;

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

struct Deed {
  const char* name;
  std::uint64_t count;  // 0 says that it was not tried
};
using Deeds = std::array<Deed, 13>;

/// Everything that is to be done.
Deeds deeds(const stress::StressCounts& counts, const stress::StressServices& services) {
  return {{{"picks", counts.picks},
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
           {"lines of the log", services.log.lines()}}};
}

bool isAllDone(const Deeds& deeds) {
  return std::all_of(deeds.begin(), deeds.end(), [](const Deed& each) { return each.count > 0; });
}

void report(std::uint64_t rounds, const Deeds& deeds) {
  std::printf("%-28s %12llu\n", "rounds", static_cast<unsigned long long>(rounds));
  for (const auto& [name, count] : deeds) {
    std::printf("%-28s %12llu\n", name, static_cast<unsigned long long>(count));
    if (count == 0) std::printf("FAILED: there were no %s\n", name);
  }
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
  const auto isOver = [&] {
    const double more = services.realClock.mediaTime() - start - request->seconds;
    return more >= (isAllDone(deeds(counts, services)) ? 0 : kMostPatience);
  };
  while (isRight && !isOver()) {
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
  const auto all = deeds(counts, services);
  report(rounds, all);
  return isRight && isAllDone(all) ? EXIT_SUCCESS : EXIT_FAILURE;
}
