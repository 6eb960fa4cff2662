#include "decoder/RowKernelsAvx2.h"

#ifdef __x86_64__

#include <immintrin.h>

#include <cstring>

// These functions alone may use the instructions, so that the program starts on any processor.
#define PELMORA_AVX2 __attribute__((target("avx2")))

namespace pelmora::decoder {

namespace {

/// Two neighbouring weights, for a multiplication of pairs.
PELMORA_AVX2 inline __m256i weightPair(const std::int16_t* weights) {
  std::int32_t both = 0;
  std::memcpy(&both, weights, sizeof(both));
  return _mm256_set1_epi32(both);
}

/// 16 samples as signed numbers of 16 bits.
PELMORA_AVX2 inline __m256i widened(const std::uint8_t* from) {
  return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from)));
}

PELMORA_AVX2 inline __m256i widened(const std::uint16_t* from) {
  const __m256i samples = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
  return _mm256_xor_si256(samples, _mm256_set1_epi16(-32768));
}

template <typename Sample>
const Sample* samplesOf(const std::byte* row) {
  return reinterpret_cast<const Sample*>(row);
}

template <typename Sample, int kShift>
PELMORA_AVX2 void mixRows(std::span<const std::byte* const> rows, const std::int16_t* weights,
                          std::size_t samples, MixedRow out) {
  const __m256i half = _mm256_set1_epi32(1 << (kShift - 1));
  for (std::size_t at = 0; at < samples; at += 16) {
    __m256i low = half;
    __m256i high = half;
    for (std::size_t row = 0; row < rows.size(); row += 2) {
      const __m256i upper = widened(samplesOf<Sample>(rows[row]) + at);
      const __m256i lower = widened(samplesOf<Sample>(rows[row + 1]) + at);
      const __m256i pair = weightPair(weights + row);
      const __m256i lowPairs = _mm256_unpacklo_epi16(upper, lower);
      const __m256i highPairs = _mm256_unpackhi_epi16(upper, lower);
      low = _mm256_add_epi32(low, _mm256_madd_epi16(lowPairs, pair));
      high = _mm256_add_epi32(high, _mm256_madd_epi16(highPairs, pair));
    }
    low = _mm256_srai_epi32(low, kShift);
    high = _mm256_srai_epi32(high, kShift);
    // Packing undoes what unpacking did to the order.
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + at), _mm256_packs_epi32(low, high));
  }
}

/// Which bytes of two pixels side by side make pairs, channel by channel; the fourth is 0 where
/// there are three.
template <int kChannels>
PELMORA_AVX2 inline __m256i pairingOrder() {
  alignas(16) std::int8_t order[16];
  for (int channel = 0; channel < 4; ++channel) {
    for (int byte = 0; byte < 4; ++byte) {
      const int from = 2 * (channel + (byte / 2) * kChannels) + byte % 2;
      order[4 * channel + byte] = static_cast<std::int8_t>(channel < kChannels ? from : -1);
    }
  }
  return _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(order)));
}

/// The sums of a pixel's four channels.
template <int kChannels>
PELMORA_AVX2 inline __m128i mixPixel(const std::int16_t* from, const std::int16_t* weights,
                                     int taps, __m256i order) {
  const __m256i firstAndSecondPair =
      _mm256_setr_epi32(0x03020100, 0x03020100, 0x03020100, 0x03020100,  //
                        0x07060504, 0x07060504, 0x07060504, 0x07060504);
  __m256i sums = _mm256_setzero_si256();
  for (int tap = 0; tap < taps; tap += 4, from += 4 * kChannels) {
    const __m128i two = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from + 2 * kChannels));
    const __m256i pairs = _mm256_shuffle_epi8(_mm256_set_m128i(next, two), order);
    const __m128i four = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(weights + tap));
    const __m256i factors = _mm256_shuffle_epi8(_mm256_broadcastq_epi64(four), firstAndSecondPair);
    sums = _mm256_add_epi32(sums, _mm256_madd_epi16(pairs, factors));
  }
  return _mm_add_epi32(_mm256_castsi256_si128(sums), _mm256_extracti128_si256(sums, 1));
}

PELMORA_AVX2 inline void store(__m128i sums, std::uint8_t* out) {
  constexpr int kShift = kWeightBits + 6;
  const __m128i values =
      _mm_srai_epi32(_mm_add_epi32(sums, _mm_set1_epi32(1 << (kShift - 1))), kShift);
  const __m128i words = _mm_packs_epi32(values, values);
  const std::int32_t bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
  std::memcpy(out, &bytes, sizeof(bytes));
}

PELMORA_AVX2 inline void store(__m128i sums, std::uint16_t* out) {
  constexpr int kShift = kWeightBits - 1;
  const __m128i values =
      _mm_srai_epi32(_mm_add_epi32(sums, _mm_set1_epi32(1 << (kShift - 1))), kShift);
  const __m128i centered = _mm_add_epi32(values, _mm_set1_epi32(32768));
  _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi32(centered, centered));
}

template <int kChannels, typename Sample>
PELMORA_AVX2 void mixPixelsOf(const std::int16_t* row, const LanczosWeights& weights, Sample* out) {
  const __m256i order = pairingOrder<kChannels>();
  const std::int16_t* factors = weights.weights.data();
  for (const int first : weights.first) {
    const std::int16_t* from = row + static_cast<std::size_t>(first) * kChannels;
    store(mixPixel<kChannels>(from, factors, weights.taps, order), out);
    factors += weights.taps;
    out += kChannels;
  }
}

template <typename Sample>
void mixPixels(const std::int16_t* row, int channels, const LanczosWeights& weights,
               std::byte* outBytes) {
  auto* out = reinterpret_cast<Sample*>(outBytes);
  switch (channels) {
    case 1:
      return mixPixelsOf<1>(row, weights, out);
    case 2:
      return mixPixelsOf<2>(row, weights, out);
    case 3:
      return mixPixelsOf<3>(row, weights, out);
    case 4:
      return mixPixelsOf<4>(row, weights, out);
    default:  // inks with alpha: too rare for code of their own
      return plainRowKernels(sizeof(Sample)).mixPixels(row, channels, weights, outBytes);
  }
}

}  // namespace

const RowKernels* avx2RowKernels(int bytesPerSample) {
  static constexpr RowKernels kBytes{mixRows<std::uint8_t, kWeightBits - 6>,
                                     mixPixels<std::uint8_t>};
  static constexpr RowKernels kWords{mixRows<std::uint16_t, kWeightBits + 1>,
                                     mixPixels<std::uint16_t>};
  if (!__builtin_cpu_supports("avx2")) return nullptr;
  return bytesPerSample == 1 ? &kBytes : &kWords;
}

}  // namespace pelmora::decoder

#else

namespace pelmora::decoder {

const RowKernels* avx2RowKernels(int) { return nullptr; }

}  // namespace pelmora::decoder

#endif
