#include "decoder/Resampler.h"

#include "decoder/BoxAverage.h"
#include "decoder/RowKernels.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <optional>

namespace pelmora::decoder {

namespace {

/// How many times larger than the result the picture is at least left to the filter by the boxes.
constexpr int kReductionOfFilter = 3;

int boxSide(int from, int to) {
  return std::clamp(from / (kReductionOfFilter * to), 1, BoxAverage::kMaxSide);
}

double reach(double given, int length) { return given > 0 ? given : length; }

}  // namespace

PixelSize fittedSize(const PixelSize& size, int longestSide) {
  const std::int64_t longer = std::max(size.width, size.height);
  if (longer <= longestSide) return size;
  const auto fitted = [&](std::int64_t side) {
    return std::max(1, static_cast<int>((2 * side * longestSide + longer) / (2 * longer)));
  };
  return {fitted(size.width), fitted(size.height)};
}

struct Resampler::State {
  State(const RowFormat& format, const PixelSize& to);

  void push(std::span<const std::byte> row);
  /// Makes those rows of the result for which the newest row of `inner` was the last missing one.
  void makeRows();
  void makeRow();
  [[nodiscard]] bool isCopy() const {
    return from.size == small.format.size && from.averagedBox == 1;
  }
  std::byte* ringRow(int row) {
    return ring.data() + static_cast<std::size_t>(row % ringRows) * ringStride;
  }

  RowFormat from;
  Raster small;
  std::optional<BoxAverage> boxes;
  RowFormat inner;  // of what the filter gets
  LanczosWeights across;
  LanczosWeights down;
  const RowKernels* kernels = nullptr;
  int rowsIn = 0;  // rows of `inner` that have come
  int rowsOut = 0;

  // The newest rows of `inner`, as many as a row of the result is mixed of.
  int ringRows = 1;
  std::size_t ringStride = 0;
  std::vector<std::byte> ring;

  std::size_t slack = 0;  // bytes behind a row
  // Room for one row of the result on its way.
  std::vector<const std::byte*> rows;
  std::vector<std::int16_t> mixed;
  std::vector<std::byte> made;  // where there is no slack
};

Resampler::State::State(const RowFormat& format, const PixelSize& to)
    : from(format), inner(format), kernels(&rowKernels(format.bytesPerChannel)) {
  small.format = {.size = to,
                  .model = format.model,
                  .hasAlpha = format.hasAlpha,
                  .bytesPerChannel = format.bytesPerChannel};
  small.premultiplied = format.hasAlpha;
  small.bytes.resize(small.format.bytesPerRow() * static_cast<std::size_t>(to.height));
  if (isCopy()) return;
  const PixelSize box{boxSide(from.size.width, to.width), boxSide(from.size.height, to.height)};
  if (box != PixelSize{1, 1}) inner = boxes.emplace(format, box).format();
  across = lanczosWeights({.count = inner.size.width,
                           .reach = reach(from.reachX, from.size.width) / box.width,
                           .averagedBox = from.averagedBox * box.width},
                          to.width);
  down = lanczosWeights({.count = inner.size.height,
                         .reach = reach(from.reachY, from.size.height) / box.height,
                         .averagedBox = from.averagedBox * box.height},
                        to.height);

  slack = kRowSlack * static_cast<std::size_t>(inner.bytesPerChannel);
  ringRows = *std::max_element(down.counts.begin(), down.counts.end());
  ringStride = inner.bytesPerRow() + slack;
  ring.resize(ringStride * static_cast<std::size_t>(ringRows));
  const int tapsOfRow = across.taps * inner.channels();
  mixed.resize(inner.samplesPerRow() + static_cast<std::size_t>(tapsOfRow) + kRowSlack);
  made.resize(small.format.bytesPerRow() + slack);
}

void Resampler::State::push(std::span<const std::byte> row) {
  if (isCopy()) {
    const std::size_t at = static_cast<std::size_t>(rowsIn++) * row.size();
    assert(at + row.size() <= small.bytes.size());
    std::memcpy(small.bytes.data() + at, row.data(), row.size());
  } else if (!boxes) {
    std::memcpy(ringRow(rowsIn), row.data(), row.size());
    makeRows();
  } else if (boxes->push(row, {ringRow(rowsIn), inner.bytesPerRow()})) {
    makeRows();
  }
}

void Resampler::State::makeRows() {
  ++rowsIn;
  for (; rowsOut < small.format.size.height; ++rowsOut) {
    const auto output = static_cast<std::size_t>(rowsOut);
    if (down.first[output] + down.counts[output] > rowsIn) return;
    makeRow();
  }
}

void Resampler::State::makeRow() {
  const auto output = static_cast<std::size_t>(rowsOut);
  const int first = down.first[output];
  const int count = down.counts[output];
  rows.clear();
  for (int row = first; row < first + count; ++row) rows.push_back(ringRow(row));
  if (rows.size() % 2 != 0) rows.push_back(rows.back());  // its weight is 0
  kernels->mixRows(rows, down.of(output).data(), inner.samplesPerRow(), mixed.data());
  const std::size_t bytes = small.format.bytesPerRow();
  std::byte* const to = small.bytes.data() + output * bytes;
  // The slack behind a row is the next row, which is made later.
  const bool hasSlack = small.bytes.size() - (output + 1) * bytes >= slack;
  kernels->mixPixels(mixed.data(), inner.channels(), across, hasSlack ? to : made.data());
  if (!hasSlack) std::memcpy(to, made.data(), bytes);
}

Resampler::Resampler(const RowFormat& from, const PixelSize& to)
    : _state(std::make_unique<State>(from, to)) {}

Resampler::~Resampler() = default;

void Resampler::push(std::span<const std::byte> row) {
  assert(row.size() == _state->from.bytesPerRow());
  _state->push(row);
}

Raster Resampler::take() { return std::move(_state->small); }

}  // namespace pelmora::decoder
