#pragma once

#include "sources/PMSourceList.h"
#include "StressServices.h"
#include "StressTree.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace pelmora::stress {

/// What was done, by all rounds together.
struct StressCounts {
  std::atomic<std::uint64_t> picks{0};
  std::atomic<std::uint64_t> pictures{0};
  std::atomic<std::uint64_t> lookups{0};
  std::atomic<std::uint64_t> notifications{0};
  std::atomic<std::uint64_t> cacheCalls{0};
  std::atomic<std::uint64_t> changes{0};
  std::uint64_t loads = 0;
  std::uint64_t unloads = 0;
  std::uint64_t cancellations = 0;
  std::uint64_t dayChanges = 0;
  std::uint64_t filters = 0;
};

/// One source list's life: four views pick, notifications of the filter arrive, folders come and
/// go, the cache is asked and saved, all at once, while main loads, unloads, cancels, sets filters
/// and changes the day. Then everything is stopped, and a last walk has to find exactly what is
/// there. Thread: main. Ownership: what it is given outlives it.
class StressRound {
 public:
  StressRound(StressServices& services, StressTree& tree, StressCounts& counts, std::uint64_t seed);
  ~StressRound();
  StressRound(const StressRound&) = delete;
  StressRound& operator=(const StressRound&) = delete;

  /// `steps` of main. What is wrong at the end, a line each.
  [[nodiscard]] std::vector<std::string> run(int steps);

 private:
  using Random = std::mt19937_64;

  void start(void (StressRound::*work)(Random&));
  void pick(Random& random);
  void notify(Random& random);
  void useCache(Random& random);
  void change(Random& random);

  void step();
  void useFilter();
  void letOthersWork();
  void stopAll();
  void walkToTheEnd();
  void checkRecords(std::vector<std::string>& problems);
  void checkChoice(std::vector<std::string>& problems);

  StressServices& _services;
  StressTree& _tree;
  StressCounts& _counts;
  Random _random;
  std::unique_ptr<sources::PMSourceList> _list;
  std::atomic<bool> _isOver{false};
  std::vector<std::thread> _threads;
};

}  // namespace pelmora::stress
