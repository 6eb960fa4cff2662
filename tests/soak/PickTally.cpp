#include "PickTally.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelmora::soak {

namespace {

constexpr double kLeastExpected = 5;

}  // namespace

double ChiSquare::deviations() const {
  if (freedom <= 0) return 0;
  const double spread = 2 / (9 * freedom);
  return (std::cbrt(sum / freedom) - (1 - spread)) / std::sqrt(spread);
}

ChiSquare chiSquare(const std::vector<Expectation>& categories) {
  std::vector<Expectation> bins;
  Expectation rest;
  for (const Expectation& category : categories) {
    if (category.expected >= kLeastExpected) {
      bins.push_back(category);
    } else {
      rest.expected += category.expected;
      rest.counted += category.counted;
    }
  }
  if (rest.expected >= kLeastExpected || bins.empty()) {
    bins.push_back(rest);
  } else {
    bins.front().expected += rest.expected;
    bins.front().counted += rest.counted;
  }
  ChiSquare result{.sum = 0, .freedom = static_cast<double>(bins.size()) - 1};
  for (const Expectation& bin : bins) {
    if (bin.expected > 0) result.sum += std::pow(bin.counted - bin.expected, 2) / bin.expected;
  }
  return result;
}

void PickTally::begin(Situation situation) {
  finish();
  _situation = std::move(situation);
}

void PickTally::count(const FilePath& file) {
  ++_picks;
  const std::string folder = file.parent().bytes();
  const auto found =
      std::find_if(_situation.folders.begin(), _situation.folders.end(),
                   [&folder](const SoakFolder& known) { return known.path.bytes() == folder; });
  const bool mayBeShown =
      found != _situation.folders.end() &&
      SoakTree::weight(*found, _situation.screen, _situation.day, _situation.isFiltered) > 0;
  const bool isAdmitted = !_situation.isFiltered ||
                          file.lastComponent().find(SoakTree::kMatching) != std::string_view::npos;
  if (!mayBeShown || !isAdmitted) _strays.push_back(file.bytes());
  ++_counts[folder];
}

void PickTally::finish() {
  double total = 0;
  double picks = 0;
  for (const auto& [folder, count] : _counts) picks += static_cast<double>(count);
  const auto weightOf = [this](const SoakFolder& folder) {
    return static_cast<double>(
        SoakTree::weight(folder, _situation.screen, _situation.day, _situation.isFiltered));
  };
  for (const SoakFolder& folder : _situation.folders) total += weightOf(folder);
  if (picks > 0 && total > 0) {
    std::vector<Expectation> sources(SoakTree::sources().size());
    for (const SoakFolder& folder : _situation.folders) {
      const Expectation here{.expected = picks * weightOf(folder) / total,
                             .counted = static_cast<double>(_counts[folder.path.bytes()])};
      for (Expectation* const sum : {&sources[folder.source], &_folders[folder.path.bytes()]}) {
        sum->expected += here.expected;
        sum->counted += here.counted;
      }
    }
    _bySource.add(chiSquare(sources));
  }
  _counts.clear();
}

ChiSquare PickTally::byFolder() const {
  std::vector<Expectation> all;
  for (const auto& [folder, expectation] : _folders) all.push_back(expectation);
  return chiSquare(all);
}

}  // namespace pelmora::soak
