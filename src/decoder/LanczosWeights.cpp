#include "decoder/LanczosWeights.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace pelmora::decoder {

namespace {

constexpr double kLobes = 3;
constexpr int kTapsAtOnce = 4;

// Averaging n samples damps a frequency f (cycles an average) by about 1 - (1 - 1/n²) (πf)² / 6;
// the taps -a, 1 + 2a, -a raise it by about a (2πf)².
constexpr double kSharpeningOfBoxes = 1.0 / 24;

struct Filter {
  double stretch = 1;
  double sharpening = 0;
};

double lanczos(double x) {
  if (x == 0) return 1;
  if (std::abs(x) >= kLobes) return 0;
  const double angle = std::numbers::pi * x;
  const double third = std::sin(angle / 3);
  const double whole = third * (3 - 4 * third * third);  // the sine of three times the angle
  return kLobes * whole * third / (angle * angle);
}

/// One output's weights, of the inputs from `first` on.
struct Line {
  int first = 0;
  std::vector<std::int16_t> weights;
};

/// Fixed point by rounding the running sum, so that no rounding error is left over in the total.
std::vector<std::int16_t> fixedPoint(const std::vector<double>& exact) {
  double total = 0;
  for (const double weight : exact) total += weight;
  std::vector<std::int16_t> fixed;
  fixed.reserve(exact.size());
  double sum = 0;
  long taken = 0;
  for (const double weight : exact) {
    sum += weight;
    const long until = std::lround(sum / total * (1 << kWeightBits));
    fixed.push_back(static_cast<std::int16_t>(until - taken));
    taken = until;
  }
  return fixed;
}

Line trimmed(int first, std::vector<std::int16_t> weights) {
  const auto isUsed = [](std::int16_t weight) { return weight != 0; };
  weights.erase(std::find_if(weights.rbegin(), weights.rend(), isUsed).base(), weights.end());
  const auto begin = std::find_if(weights.begin(), weights.end(), isUsed);
  first += static_cast<int>(begin - weights.begin());
  weights.erase(weights.begin(), begin);
  return {first, std::move(weights)};
}

/// The filter's values at `count` inputs from `first` on, with the response of averaging divided
/// out as far as three taps do that.
std::vector<double> filterAt(double center, int first, int count, const Filter& filter) {
  std::vector<double> plain;
  plain.reserve(static_cast<std::size_t>(count) + 2);
  for (int i = -1; i <= count; ++i) {
    plain.push_back(lanczos((first + i - center) / filter.stretch));
  }
  std::vector<double> values;
  values.reserve(static_cast<std::size_t>(count));
  for (std::size_t i = 1; i + 1 < plain.size(); ++i) {
    const double neighbours = plain[i - 1] + plain[i + 1];
    values.push_back(plain[i] * (1 + 2 * filter.sharpening) - neighbours * filter.sharpening);
  }
  return values;
}

Line lineOf(double center, const Filter& filter, int inputs) {
  const double reach = kLobes * filter.stretch + (filter.sharpening > 0 ? 1 : 0);
  const int from = static_cast<int>(std::ceil(center - reach));
  const int to = static_cast<int>(std::floor(center + reach));
  const int first = std::clamp(from, 0, inputs - 1);
  const int last = std::clamp(to, 0, inputs - 1);
  std::vector<double> exact(static_cast<std::size_t>(last - first) + 1);
  int input = from;
  for (const double weight : filterAt(center, from, to - from + 1, filter)) {
    exact[static_cast<std::size_t>(std::clamp(input++, first, last) - first)] += weight;
  }
  return trimmed(first, fixedPoint(exact));
}

}  // namespace

LanczosWeights lanczosWeights(const LineInputs& inputs, int outputs) {
  const double step = inputs.reach / outputs;
  const double averaged = inputs.averagedBox;
  const Filter filter{.stretch = std::max(step, 1.0),
                      .sharpening = kSharpeningOfBoxes * (1 - 1 / (averaged * averaged))};
  std::vector<Line> lines;
  lines.reserve(static_cast<std::size_t>(outputs));
  std::size_t longest = 0;
  for (int output = 0; output < outputs; ++output) {
    lines.push_back(lineOf((output + 0.5) * step - 0.5, filter, inputs.count));
    longest = std::max(longest, lines.back().weights.size());
  }
  const std::size_t taps = (longest + kTapsAtOnce - 1) / kTapsAtOnce * kTapsAtOnce;
  LanczosWeights result;
  result.taps = static_cast<int>(taps);
  result.weights.resize(lines.size() * taps);
  for (std::size_t output = 0; output < lines.size(); ++output) {
    const auto& [first, weights] = lines[output];
    result.first.push_back(first);
    result.counts.push_back(static_cast<int>(weights.size()));
    std::copy(weights.begin(), weights.end(),
              result.weights.begin() + static_cast<std::ptrdiff_t>(output * taps));
  }
  return result;
}

}  // namespace pelmora::decoder
