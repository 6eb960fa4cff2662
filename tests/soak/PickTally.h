#pragma once

#include "SoakTree.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace pelmora::soak {

/// How far counts are from what was expected: Pearson's sum, and its degrees of freedom.
struct ChiSquare {
  double sum = 0;
  double freedom = 0;

  void add(const ChiSquare& other) {
    sum += other.sum;
    freedom += other.freedom;
  }
  /// By how many standard deviations of a normal distribution it is too large, about (Wilson and
  /// Hilferty).
  [[nodiscard]] double deviations() const;
};

/// What was expected of a category, and what was counted.
struct Expectation {
  double expected = 0;
  double counted = 0;
};

/// Categories of which fewer than five are expected are taken together.
[[nodiscard]] ChiSquare chiSquare(const std::vector<Expectation>& categories);

/// Compares what one screen shows with the weights of the folders: source by source on each day,
/// and folder by folder over the whole run. Thread: main.
class PickTally {
 public:
  /// What may be shown from now on.
  struct Situation {
    std::vector<SoakFolder> folders;
    std::uint64_t screen = 0;
    int day = 0;  // 0 = Sunday
    bool isFiltered = false;
  };

  void begin(Situation situation);
  void count(const FilePath& file);
  /// Ends the last situation.
  void finish();

  [[nodiscard]] std::uint64_t picks() const { return _picks; }
  /// Pictures of folders that must not be shown, or that the filter does not admit.
  [[nodiscard]] const std::vector<std::string>& strays() const { return _strays; }
  [[nodiscard]] const ChiSquare& bySource() const { return _bySource; }
  [[nodiscard]] ChiSquare byFolder() const;

 private:
  Situation _situation;
  std::map<std::string, std::uint64_t> _counts;  // by folder, in this situation
  std::map<std::string, Expectation> _folders;   // over the whole run
  ChiSquare _bySource;
  std::uint64_t _picks = 0;
  std::vector<std::string> _strays;
};

}  // namespace pelmora::soak
