#include "render/Shadow.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <numbers>
#include <vector>

namespace pelmora::render {

namespace {

constexpr double kReachInDeviations = 3;
constexpr double kSharpest = 0.01;  // of a pixel: a blur of 0 is drawn as this

using Profile = std::vector<float>;

/// The part of the Gaussian's weight that lies below `distance`.
double weightBelow(double distance, double deviation) {
  return (1 + std::erf(distance / (deviation * std::numbers::sqrt2))) / 2;
}

/// How much of a bar from `low` to `high` the blur leaves at each of `count` pixel centres.
Profile blurredBar(int count, double low, double high, double deviation) {
  Profile profile;
  profile.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const double at = i + 0.5;
    profile.push_back(
        static_cast<float>(weightBelow(at - low, deviation) - weightBelow(at - high, deviation)));
  }
  return profile;
}

/// The weight of each pixel from `first` on, for a blur about a point `shift` pixels away.
struct Kernel {
  int first = 0;
  Profile weights;
};

Kernel kernelFor(double deviation, double shift, int reach) {
  Kernel kernel{static_cast<int>(std::floor(shift)) - reach, {}};
  double sum = 0;
  for (int i = kernel.first; i <= kernel.first + 2 * reach + 1; ++i) {
    const double weight =
        weightBelow(i + 0.5 - shift, deviation) - weightBelow(i - 0.5 - shift, deviation);
    kernel.weights.push_back(static_cast<float>(weight));
    sum += weight;
  }
  for (float& weight : kernel.weights) weight = static_cast<float>(weight / sum);
  return kernel;
}

quint32 blackWithAlpha(float alpha) { return static_cast<quint32>(alpha * 255 + 0.5F) << 24U; }

/// A picture of one float a pixel.
struct Plane {
  Plane(int w, int h)
      : width(w), height(h), values(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {}
  float* row(int y) { return values.data() + static_cast<std::ptrdiff_t>(y) * width; }
  int width;
  int height;
  std::vector<float> values;
};

/// Four at a time: not every build lets the compiler find that by itself, and this is nearly all of
/// the time that such a shadow takes.
void addWeighted(float* to, const float* from, float weight, int count) {
  typedef float Floats __attribute__((vector_size(16)));
  constexpr int kLanes = 4;
  int x = 0;
  for (; x + kLanes <= count; x += kLanes) {
    Floats sum;
    Floats values;
    std::memcpy(&sum, to + x, sizeof sum);
    std::memcpy(&values, from + x, sizeof values);
    sum += values * weight;
    std::memcpy(to + x, &sum, sizeof sum);
  }
  for (; x < count; ++x) to[x] += weight * from[x];
}

Plane alphaOf(const QImage& art, const QPoint& place, const QSize& size) {
  Plane plane(size.width(), size.height());
  for (int y = 0; y < art.height(); ++y) {
    const auto* pixels = reinterpret_cast<const quint32*>(art.constScanLine(y));
    float* row = plane.row(y + place.y()) + place.x();
    for (int x = 0; x < art.width(); ++x) row[x] = static_cast<float>(pixels[x] >> 24U) / 255;
  }
  return plane;
}

/// Row by row, with all the weights on one, so that the sums stay in the processor's cache.
Plane blurredAlong(Qt::Orientation axis, Plane& from, const Kernel& kernel) {
  Plane to(from.width, from.height);
  const bool isHorizontal = axis == Qt::Horizontal;
  for (int y = 0; y < from.height; ++y) {
    for (std::size_t i = 0; i < kernel.weights.size(); ++i) {
      const int offset = kernel.first + static_cast<int>(i);
      const int dx = isHorizontal ? offset : 0;
      const int source = isHorizontal ? y : y - offset;
      const int left = std::max(0, dx);
      const int count = std::min(from.width, from.width + dx) - left;
      if (count <= 0 || source < 0 || source >= from.height) continue;
      addWeighted(to.row(y) + left, from.row(source) + left - dx, kernel.weights[i], count);
    }
  }
  return to;
}

}  // namespace

int Shadow::reach() const {
  return isVisible() ? static_cast<int>(std::ceil(kReachInDeviations * std::max(0.0, deviation)))
                     : 0;
}

void drawShadowOfRectangle(QImage& image, const QRectF& rectangle, const Shadow& shadow) {
  const QRectF cast = rectangle.translated(shadow.offset);
  const double deviation = std::max(shadow.deviation, kSharpest);
  const Profile across = blurredBar(image.width(), cast.left(), cast.right(), deviation);
  const Profile down = blurredBar(image.height(), cast.top(), cast.bottom(), deviation);
  for (int y = 0; y < image.height(); ++y) {
    auto* row = reinterpret_cast<quint32*>(image.scanLine(y));
    const float strength = down[static_cast<std::size_t>(y)] * static_cast<float>(shadow.opacity);
    for (std::size_t x = 0; x < across.size(); ++x) row[x] = blackWithAlpha(across[x] * strength);
  }
}

void drawShadowOfPicture(QImage& image, const QImage& art, const QPoint& place,
                         const Shadow& shadow) {
  const double deviation = std::max(shadow.deviation, kSharpest);
  const int reach = std::max(1, shadow.reach());
  Plane alpha = alphaOf(art, place, image.size());
  Plane across =
      blurredAlong(Qt::Horizontal, alpha, kernelFor(deviation, shadow.offset.x(), reach));
  Plane blurred =
      blurredAlong(Qt::Vertical, across, kernelFor(deviation, shadow.offset.y(), reach));
  const auto opacity = static_cast<float>(shadow.opacity);
  for (int y = 0; y < image.height(); ++y) {
    auto* row = reinterpret_cast<quint32*>(image.scanLine(y));
    const float* values = blurred.row(y);
    for (int x = 0; x < image.width(); ++x) {
      row[x] = blackWithAlpha(std::min(1.0F, values[x]) * opacity);
    }
  }
}

}  // namespace pelmora::render
