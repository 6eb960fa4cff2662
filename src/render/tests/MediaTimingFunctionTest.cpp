#include "render/MediaTimingFunction.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace pelmora::render {
namespace {

using Name = MediaTimingFunction::Name;

struct ControlPoints {
  Name name;
  long double x1, y1, x2, y2;
};

constexpr ControlPoints kCurves[] = {{Name::standard, 0.25L, 0.1L, 0.25L, 1},
                                     {Name::easeIn, 0.42L, 0, 1, 1},
                                     {Name::easeOut, 0, 0, 0.58L, 1}};

long double bernstein(long double t, long double p1, long double p2) {
  const long double s = 1 - t;
  return 3 * s * s * t * p1 + 3 * s * t * t * p2 + t * t * t;
}

/// By plain bisection in extended precision, from the curve's definition.
double expectedAt(const ControlPoints& curve, long double x) {
  long double low = 0;
  long double high = 1;
  for (int i = 0; i < 80; ++i) {
    const long double middle = (low + high) / 2;
    (bernstein(middle, curve.x1, curve.x2) < x ? low : high) = middle;
  }
  return static_cast<double>(bernstein((low + high) / 2, curve.y1, curve.y2));
}

TEST(MediaTimingFunction, agreesWithBisectionOfTheCurvesDefinition) {
  for (const ControlPoints& curve : kCurves) {
    const MediaTimingFunction function(curve.name);
    for (int i = 0; i <= 4000; ++i) {
      const double x = i / 4000.0;
      ASSERT_NEAR(function.valueAt(x), expectedAt(curve, x), 1e-12)
          << function.description() << " at " << x;
    }
  }
}

TEST(MediaTimingFunction, staysExactWhereTheCurveIsSteepestAndFlattest) {
  for (const ControlPoints& curve : kCurves) {
    const MediaTimingFunction function(curve.name);
    for (const double distance : {1e-15, 1e-12, 1e-9, 1e-6, 1e-3}) {
      ASSERT_NEAR(function.valueAt(distance), expectedAt(curve, distance), 1e-7);
      ASSERT_NEAR(function.valueAt(1 - distance), expectedAt(curve, 1 - distance), 1e-7);
    }
  }
}

TEST(MediaTimingFunction, easesInSlowlyAndEasesOutFast) {
  // Known values of the two curves, a quarter and half of the way.
  EXPECT_NEAR(MediaTimingFunction(Name::easeIn).valueAt(0.25), 0.0934646507, 1e-9);
  EXPECT_NEAR(MediaTimingFunction(Name::easeOut).valueAt(0.25), 0.3781, 1e-3);
  EXPECT_NEAR(MediaTimingFunction(Name::standard).valueAt(0.5), 0.8024033877, 1e-9);
}

TEST(MediaTimingFunction, easeOutIsEaseInTurnedAround) {
  const MediaTimingFunction easeIn(Name::easeIn);
  const MediaTimingFunction easeOut(Name::easeOut);
  for (int i = 0; i <= 100; ++i) {
    EXPECT_NEAR(easeOut.valueAt(i / 100.0), 1 - easeIn.valueAt(1 - i / 100.0), 1e-12);
  }
}

TEST(MediaTimingFunction, startsAtZeroAndEndsAtOneExactly) {
  for (const Name name : {Name::standard, Name::easeIn, Name::easeOut, Name::linear}) {
    EXPECT_EQ(MediaTimingFunction(name).valueAt(0), 0);
    EXPECT_EQ(MediaTimingFunction(name).valueAt(1), 1);
  }
}

TEST(MediaTimingFunction, clampsWhatLiesOutside) {
  for (const Name name : {Name::standard, Name::linear}) {
    const MediaTimingFunction function(name);
    EXPECT_EQ(function.valueAt(-3), 0);
    EXPECT_EQ(function.valueAt(7), 1);
    EXPECT_EQ(function.valueAt(std::numeric_limits<double>::infinity()), 1);
    EXPECT_EQ(function.valueAt(std::numeric_limits<double>::quiet_NaN()), 0);
  }
}

TEST(MediaTimingFunction, neverGoesBack) {
  for (const Name name : {Name::standard, Name::easeIn, Name::easeOut, Name::linear}) {
    const MediaTimingFunction function(name);
    double before = 0;
    for (int i = 0; i <= 10000; ++i) {
      const double value = function.valueAt(i / 10000.0);
      ASSERT_GE(value, before);
      before = value;
    }
  }
}

TEST(MediaTimingFunction, isLinearUnlessNamed) {
  EXPECT_EQ(MediaTimingFunction().valueAt(0.3), 0.3);
  EXPECT_STREQ(MediaTimingFunction().description(), "linear");
  EXPECT_STREQ(MediaTimingFunction(Name::standard).description(), "default");
  EXPECT_STREQ(MediaTimingFunction(Name::easeIn).description(), "easeIn");
  EXPECT_STREQ(MediaTimingFunction(Name::easeOut).description(), "easeOut");
}

}  // namespace
}  // namespace pelmora::render
