#include "decoder/LanczosWeights.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <numeric>

namespace pelmora::decoder {

namespace {

constexpr int kOne = 1 << kWeightBits;

struct Lengths {
  int inputs;
  int outputs;
};

constexpr Lengths kLengths[] = {{1, 1},  {2, 1},    {7, 7},      {5, 3},      {100, 99},
                                {13, 1}, {1000, 1}, {1008, 810}, {1500, 810}, {333, 64},
                                {4, 4},  {6, 2},    {90, 16},    {17, 16},    {3, 2}};

LanczosWeights plainWeights(const Lengths& lengths, int averagedBox = 1) {
  return lanczosWeights(
      {.count = lengths.inputs, .reach = double(lengths.inputs), .averagedBox = averagedBox},
      lengths.outputs);
}

/// Where the weights' centre of gravity lies, in inputs.
double centerOf(const LanczosWeights& weights, std::size_t output) {
  double moment = 0;
  for (std::size_t tap = 0; tap < weights.of(output).size(); ++tap) {
    moment += weights.of(output)[tap] * (weights.first[output] + double(tap));
  }
  return moment / kOne;
}

}  // namespace

TEST(LanczosWeights, ofEveryOutputSumUpToOne) {
  for (const Lengths& lengths : kLengths) {
    for (const int box : {1, 2, 8}) {
      const LanczosWeights weights = plainWeights(lengths, box);
      for (std::size_t i = 0; i < std::size_t(lengths.outputs); ++i) {
        const auto of = weights.of(i);
        ASSERT_EQ(std::accumulate(of.begin(), of.end(), 0), kOne)
            << lengths.inputs << " to " << lengths.outputs << ", box " << box;
      }
    }
  }
}

TEST(LanczosWeights, leaveALineOfTheSameLengthAsItIs) {
  const LanczosWeights weights = plainWeights({7, 7});
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(weights.first[std::size_t(i)], i);
    EXPECT_EQ(weights.counts[std::size_t(i)], 1);
    EXPECT_EQ(weights.of(std::size_t(i))[0], kOne);
  }
}

TEST(LanczosWeights, stayWithinTheLine) {
  for (const Lengths& lengths : kLengths) {
    const LanczosWeights weights = plainWeights(lengths, 4);
    for (std::size_t i = 0; i < std::size_t(lengths.outputs); ++i) {
      EXPECT_GE(weights.first[i], 0);
      EXPECT_GE(weights.counts[i], 1);
      EXPECT_LE(weights.first[i] + weights.counts[i], lengths.inputs);
      const auto unused = weights.of(i).subspan(std::size_t(weights.counts[i]));
      EXPECT_TRUE(
          std::all_of(unused.begin(), unused.end(), [](int weight) { return weight == 0; }));
    }
    EXPECT_EQ(weights.taps % 4, 0);
  }
}

TEST(LanczosWeights, neverAddUpToMoreThanTheKernelsHaveRoomFor) {
  for (int outputs = 1; outputs <= 60; ++outputs) {
    for (const int box : {1, 8}) {
      const LanczosWeights weights = plainWeights({120, outputs}, box);
      for (std::size_t i = 0; i < std::size_t(outputs); ++i) {
        int magnitude = 0;
        for (const int weight : weights.of(i)) magnitude += std::abs(weight);
        ASSERT_LE(magnitude, 2 * kOne);
      }
    }
  }
}

TEST(LanczosWeights, lieAroundTheCenterOfTheirOutput) {
  for (const Lengths& lengths : {Lengths{333, 64}, {1008, 810}, {90, 16}}) {
    for (const int box : {1, 8}) {
      const LanczosWeights weights = plainWeights(lengths, box);
      const double step = double(lengths.inputs) / lengths.outputs;
      for (int i = 5; i < lengths.outputs - 5; ++i) {
        EXPECT_NEAR(centerOf(weights, std::size_t(i)), (i + 0.5) * step - 0.5, 0.02) << i;
      }
    }
  }
}

TEST(LanczosWeights, areTheFilters) {
  // Half the size: the taps lie at odd quarters of its lobes.
  const LanczosWeights weights = plainWeights({100, 50});
  const double pi = std::acos(-1.0);
  double total = 0;
  std::vector<double> exact;
  for (int tap = 0; tap < 12; ++tap) {
    const double x = (tap - 5.5) / 2;
    exact.push_back(3 * std::sin(pi * x) * std::sin(pi * x / 3) / (pi * pi * x * x));
    total += exact.back();
  }
  ASSERT_EQ(weights.first[25], 45);
  for (std::size_t tap = 0; tap < 12; ++tap) {
    EXPECT_NEAR(weights.of(25)[tap], exact[tap] / total * kOne, 1.01) << tap;
  }
}

TEST(LanczosWeights, areTheSameFromBothEnds) {
  const LanczosWeights weights = plainWeights({61, 23});
  for (std::size_t i = 0; i < 23; ++i) {
    const std::size_t mirrored = 22 - i;
    for (int input = 0; input < 61; ++input) {
      const auto weightOf = [&](std::size_t output, int of) {
        const int tap = of - weights.first[output];
        return tap < 0 || tap >= weights.taps ? 0 : weights.of(output)[std::size_t(tap)];
      };
      EXPECT_NEAR(weightOf(i, input), weightOf(mirrored, 60 - input), 1);
    }
  }
}

TEST(LanczosWeights, endWhereTheLineEndsWithinItsLastSample) {
  const LanczosWeights weights = lanczosWeights({.count = 40, .reach = 39.25}, 10);
  EXPECT_NEAR(centerOf(weights, 5), 5.5 * 3.925 - 0.5, 0.02);
}

TEST(LanczosWeights, sharpenWhatAveragingHasBlurred) {
  const auto middle = [](const LanczosWeights& weights) {
    return *std::max_element(weights.of(20).begin(), weights.of(20).end());
  };
  EXPECT_GT(middle(plainWeights({60, 41}, 8)), middle(plainWeights({60, 41}, 1)));
}

}  // namespace pelmora::decoder
