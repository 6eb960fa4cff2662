#include "render/MediaTimingFunction.h"

#include <algorithm>
#include <cmath>

namespace pelmora::render {

namespace {

/// One coordinate of a cubic Bézier from 0 to 1 with the control values `a` and `b`.
class BezierCoordinate {
 public:
  constexpr BezierCoordinate(double a, double b)
      : _linear(3 * a), _quadratic(3 * b - 6 * a), _cubic(1 + 3 * a - 3 * b) {}

  [[nodiscard]] double at(double t) const { return ((_cubic * t + _quadratic) * t + _linear) * t; }
  [[nodiscard]] double slopeAt(double t) const {
    return (3 * _cubic * t + 2 * _quadratic) * t + _linear;
  }

 private:
  double _linear;
  double _quadratic;
  double _cubic;
};

struct Curve {
  BezierCoordinate x;
  BezierCoordinate y;
};

constexpr Curve curveNamed(MediaTimingFunction::Name name) {
  switch (name) {
    case MediaTimingFunction::Name::standard:
      return {{0.25, 0.25}, {0.1, 1}};
    case MediaTimingFunction::Name::easeIn:
      return {{0.42, 1}, {0, 1}};
    case MediaTimingFunction::Name::easeOut:
      return {{0, 0.58}, {0, 1}};
    case MediaTimingFunction::Name::linear:
      break;
  }
  return {{0, 1}, {0, 1}};
}

/// The curve's parameter at which its x is `x`. Newton's steps, kept inside a shrinking bracket:
/// ease-in ends and ease-out starts with a slope of zero, where Newton alone would leave the curve.
double parameterAt(const BezierCoordinate& coordinate, double x) {
  constexpr double kPrecision = 1e-15;
  constexpr int kMaxSteps = 100;  // bisection alone needs about 50
  double low = 0;
  double high = 1;
  double t = x;
  for (int step = 0; step < kMaxSteps && high - low > kPrecision; ++step) {
    const double error = coordinate.at(t) - x;
    if (std::abs(error) < kPrecision) break;
    (error > 0 ? high : low) = t;
    const double slope = coordinate.slopeAt(t);
    const double next = slope > 0 ? t - error / slope : low;
    t = next > low && next < high ? next : (low + high) / 2;
  }
  return t;
}

}  // namespace

double MediaTimingFunction::valueAt(double fraction) const {
  if (!(fraction > 0)) return 0;
  if (fraction >= 1) return 1;
  if (_name == Name::linear) return fraction;
  const Curve curve = curveNamed(_name);
  return std::clamp(curve.y.at(parameterAt(curve.x, fraction)), 0.0, 1.0);
}

const char* MediaTimingFunction::description() const {
  switch (_name) {
    case Name::standard:
      return "default";
    case Name::easeIn:
      return "easeIn";
    case Name::easeOut:
      return "easeOut";
    case Name::linear:
      break;
  }
  return "linear";
}

}  // namespace pelmora::render
