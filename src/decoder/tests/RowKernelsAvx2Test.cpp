#include "decoder/RowKernelsAvx2.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace pelmora::decoder {

namespace {

/// Noise, and often the extremes.
template <typename Sample>
std::vector<Sample> noise(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<Sample> samples(count);
  for (Sample& sample : samples) {
    const auto number = static_cast<unsigned>(random());
    const auto other = static_cast<Sample>(number >> 2);
    sample = number % 4 == 0 ? Sample{0} : number % 4 == 1 ? static_cast<Sample>(~0U) : other;
  }
  return samples;
}

const std::byte* bytesOf(const auto& samples) {
  return reinterpret_cast<const std::byte*>(samples.data());
}

template <typename Sample>
std::vector<std::int16_t> mixRows(const RowKernels& kernels, std::size_t samples,
                                  const LanczosWeights& weights, std::size_t output) {
  std::vector<std::vector<Sample>> rows;
  std::vector<const std::byte*> pointers;
  for (int row = 0; row < weights.taps; ++row) {
    rows.push_back(noise<Sample>(samples + kRowSlack, unsigned(row)));
    pointers.push_back(bytesOf(rows.back()));
  }
  std::vector<std::int16_t> out(samples + kRowSlack);
  kernels.mixRows(pointers, weights.of(output).data(), samples, out.data());
  out.resize(samples);
  return out;
}

template <typename Sample>
std::vector<Sample> mixPixels(const RowKernels& kernels, int channels,
                              const LanczosWeights& weights, std::size_t inputs) {
  std::vector<std::int16_t> row = noise<std::int16_t>(
      (inputs + std::size_t(weights.taps)) * std::size_t(channels) + kRowSlack, 7);
  // As far as mixed rows go.
  for (std::int16_t& value : row) value = static_cast<std::int16_t>(value % 24000);
  const std::size_t samples = weights.first.size() * std::size_t(channels);
  std::vector<Sample> out(samples + kRowSlack);
  kernels.mixPixels(row.data(), channels, weights, reinterpret_cast<std::byte*>(out.data()));
  out.resize(samples);
  return out;
}

template <typename Sample>
void expectSame(int inputs, int outputs) {
  const RowKernels* fast = avx2RowKernels(sizeof(Sample));
  if (!fast) return;  // nothing to compare on this processor
  const RowKernels& plain = plainRowKernels(sizeof(Sample));
  const LanczosWeights weights =
      lanczosWeights({.count = inputs, .reach = double(inputs), .averagedBox = 4}, outputs);
  for (std::size_t output = 0; output < std::size_t(outputs); output += 3) {
    const std::size_t samples = 40 + output;
    EXPECT_EQ(mixRows<Sample>(*fast, samples, weights, output),
              mixRows<Sample>(plain, samples, weights, output));
  }
  for (int channels = 1; channels <= 5; ++channels) {
    EXPECT_EQ(mixPixels<Sample>(*fast, channels, weights, std::size_t(inputs)),
              mixPixels<Sample>(plain, channels, weights, std::size_t(inputs)))
        << channels;
  }
}

}  // namespace

TEST(RowKernelsAvx2, giveTheSameBytesAsThePlainOnes) {
  expectSame<std::uint8_t>(100, 81);
  expectSame<std::uint8_t>(100, 17);
  expectSame<std::uint8_t>(1, 1);
  expectSame<std::uint8_t>(3, 2);
}

TEST(RowKernelsAvx2, giveTheSameWordsAsThePlainOnes) {
  expectSame<std::uint16_t>(100, 81);
  expectSame<std::uint16_t>(100, 17);
  expectSame<std::uint16_t>(1, 1);
  expectSame<std::uint16_t>(3, 2);
}

}  // namespace pelmora::decoder
