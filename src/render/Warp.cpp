#include "render/Warp.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <utility>

namespace pelmora::render {

namespace {

// Vectors of the compiler's own kind: eight 16-bit lanes, two pixels of four channels.
typedef std::uint8_t Bytes8 __attribute__((vector_size(8)));
typedef std::uint16_t Lanes8 __attribute__((vector_size(16)));

// Places in the source are 32.32 fixed point: exact to add, so that a row may be entered anywhere.
constexpr double kOne = 4294967296.0;
constexpr int kFractionBits = 32;
constexpr std::uint16_t kFullWeight = 256;
constexpr std::uint16_t kHalfWeight = 128;

std::int64_t toFixed(double value) { return std::llround(value * kOne); }

/// Weights of 8 bits for the pixel at a place and its neighbour.
std::uint16_t neighbourWeight(std::int64_t place) {
  return static_cast<std::uint16_t>((static_cast<std::uint64_t>(place) >> 24U) & 0xFFU);
}

Lanes8 widen(const quint32* pixels) {
  Bytes8 bytes;
  std::memcpy(&bytes, pixels, sizeof bytes);
  return __builtin_convertvector(bytes, Lanes8);
}

/// x ÷ 255, rounded, for x up to 255 × 255.
Lanes8 dividedBy255(Lanes8 x) {
  x += kHalfWeight;
  return (x + (x >> 8)) >> 8;
}

/// The mix of the four pixels about a place, in the lower four lanes.
Lanes8 sample(const quint32* bits, qsizetype stride, std::int64_t u, std::int64_t v) {
  const quint32* pixel = bits + (v >> kFractionBits) * stride + (u >> kFractionBits);
  const std::uint16_t down = neighbourWeight(v);
  const std::uint16_t across = neighbourWeight(u);
  const auto up = static_cast<std::uint16_t>(kFullWeight - down);
  const auto back = static_cast<std::uint16_t>(kFullWeight - across);
  const Lanes8 pair = (widen(pixel) * up + widen(pixel + stride) * down + kHalfWeight) >> 8;
  const Lanes8 weights = {back, back, back, back, across, across, across, across};
  const Lanes8 weighted = pair * weights;
  const Lanes8 swapped = __builtin_shufflevector(weighted, weighted, 4, 5, 6, 7, 0, 1, 2, 3);
  return (weighted + swapped + kHalfWeight) >> 8;
}

quint32 narrow(Lanes8 lanes) {
  const Bytes8 bytes = __builtin_convertvector(lanes, Bytes8);
  quint32 pixel = 0;
  std::memcpy(&pixel, &bytes, sizeof pixel);
  return pixel;
}

Lanes8 widenOne(quint32 pixel) {
  const quint32 pair[2] = {pixel, 0};
  return widen(pair);
}

void drawOver(quint32& pixel, Lanes8 color) {
  constexpr int kAlphaLane = QSysInfo::ByteOrder == QSysInfo::LittleEndian ? 3 : 0;
  const std::uint16_t alpha = color[kAlphaLane];
  if (alpha == 0) return;
  if (alpha != 255) {
    const auto rest = static_cast<std::uint16_t>(255 - alpha);
    color += dividedBy255(widenOne(pixel) * rest);
  }
  pixel = narrow(color);
}

std::int64_t floorDivided(std::int64_t a, std::int64_t b) {
  const std::int64_t quotient = a / b;
  return a % b != 0 && (a % b < 0) != (b < 0) ? quotient - 1 : quotient;
}

/// The part of `span` in which low ≤ start + step × x < high.
PixelSpan whereBetween(PixelSpan span, std::int64_t start, std::int64_t step, std::int64_t low,
                       std::int64_t high) {
  if (low >= high) return {};
  if (step == 0) return start >= low && start < high ? span : PixelSpan{};
  if (step < 0) return whereBetween(span, -start, -step, 1 - high, 1 - low);
  const std::int64_t first = floorDivided(low - start + step - 1, step);
  const std::int64_t last = floorDivided(high - 1 - start, step);
  return {std::max(span.begin, first), std::min(span.end, last + 1)};
}

/// Whether every place of a row of an image stays within the numbers of fixed point.
bool isWithinReach(const QTransform& toSource) {
  constexpr double kFarthest = 1 << 26;
  const QRectF reached = toSource.mapRect(QRectF(0, 0, 32768, 32768));
  return std::abs(reached.left()) < kFarthest && std::abs(reached.right()) < kFarthest &&
         std::abs(reached.top()) < kFarthest && std::abs(reached.bottom()) < kFarthest;
}

/// What is left of a span when parts are taken out: in order, none empty.
void subtract(std::vector<PixelSpan>& spans, const PixelSpan& hole) {
  if (hole.isEmpty()) return;
  std::vector<PixelSpan> left;
  for (const PixelSpan& span : spans) {
    const PixelSpan before{span.begin, std::min(span.end, hole.begin)};
    const PixelSpan after{std::max(span.begin, hole.end), span.end};
    if (!before.isEmpty()) left.push_back(before);
    if (!after.isEmpty()) left.push_back(after);
  }
  spans = std::move(left);
}

}  // namespace

Warp::Warp(const QImage& source, const QRectF& opaquePart, const QTransform& toTarget,
           double opacity)
    : _source(source) {
  bool isInvertible = false;
  _toSource = toTarget.inverted(&isInvertible);
  _opacity = static_cast<std::uint16_t>(std::lround(std::clamp(opacity, 0.0, 1.0) * kFullWeight));
  if (!isInvertible || _opacity == 0 || !isWithinReach(_toSource)) return;
  _du = toFixed(_toSource.m11());
  _dv = toFixed(_toSource.m12());
  // A place's own pixel and the next one to the right and below are mixed: both must be there.
  _all = {0, 0, toFixed(source.width() - 1), toFixed(source.height() - 1)};
  if (_opacity != kFullWeight) return;
  _opaque = {toFixed(opaquePart.left()), toFixed(opaquePart.top()), toFixed(opaquePart.right() - 1),
             toFixed(opaquePart.bottom() - 1)};
}

Warp::Row Warp::row(int y) const {
  // Places are measured between pixel centres.
  const QPointF start = _toSource.map(QPointF(0.5, y + 0.5)) - QPointF(0.5, 0.5);
  return {toFixed(start.x()), toFixed(start.y())};
}

PixelSpan Warp::inside(const Places& places, int y, PixelSpan span) const {
  if (places.left >= places.right || places.top >= places.bottom) return {};
  const Row start = row(y);
  span = whereBetween(span, start.u, _du, places.left, places.right);
  return whereBetween(span, start.v, _dv, places.top, places.bottom);
}

PixelSpan Warp::touched(int y, PixelSpan span) const { return inside(_all, y, span); }

PixelSpan Warp::hidden(int y, PixelSpan span) const { return inside(_opaque, y, span); }

void Warp::drawRow(quint32* pixels, int y, PixelSpan span) const {
  span = touched(y, span);
  if (span.isEmpty()) return;
  const Row start = row(y);
  const auto* bits = reinterpret_cast<const quint32*>(_source.constBits());
  const qsizetype stride = _source.bytesPerLine() / 4;
  std::int64_t u = start.u + span.begin * _du;
  std::int64_t v = start.v + span.begin * _dv;
  for (std::int64_t x = span.begin; x < span.end; ++x, u += _du, v += _dv) {
    Lanes8 color = sample(bits, stride, u, v);
    if (_opacity != kFullWeight) color = (color * _opacity + kHalfWeight) >> 8;
    drawOver(pixels[x], color);
  }
}

void drawWarped(QImage& target, const std::vector<Warp>& warps, const QRect& clip) {
  const QRect drawn = clip & target.rect();
  const PixelSpan whole{drawn.left(), drawn.right() + 1};
  std::vector<PixelSpan> visible;
  for (int y = drawn.top(); y <= drawn.bottom(); ++y) {
    auto* pixels = reinterpret_cast<quint32*>(target.scanLine(y));
    for (auto warp = warps.begin(); warp != warps.end(); ++warp) {
      visible = {warp->touched(y, whole)};
      for (auto above = warp + 1; above != warps.end(); ++above) {
        subtract(visible, above->hidden(y, whole));
      }
      for (const PixelSpan& span : visible) warp->drawRow(pixels, y, span);
    }
  }
}

}  // namespace pelmora::render
