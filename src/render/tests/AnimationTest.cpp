#include "render/Animation.h"

#include "render/tests/Stage.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelmora::render {
namespace {

TEST(Animation, namesTheAttributesByTheirKeyPaths) {
  EXPECT_STREQ(description(KeyPath::position), "position");
  EXPECT_STREQ(description(KeyPath::opacity), "opacity");
  EXPECT_STREQ(description(KeyPath::scale), "transform.scale");
  EXPECT_STREQ(description(KeyPath::rotation), "transform.rotation.z");
}

TEST(Animation, takesAsManyKeyTimesAsValuesThatAscendFromZeroToOne) {
  EXPECT_TRUE((Keyframes{{0, 0.2, 0.8, 1}, {0.0, 0.8, 0.8, 0.0}}.areWellFormed()));
  EXPECT_TRUE((Keyframes{{0.5}, {Point{1, 2}}}.areWellFormed()));
  EXPECT_TRUE((Keyframes{{0.5, 0.5}, {1.0, 2.0}}.areWellFormed()));
}

TEST(Animation, refusesOtherKeyframes) {
  constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
  const Keyframes malformed[] = {{{}, {}},
                                 {{0, 1}, {}},
                                 {{}, {0.0, 1.0}},
                                 {{0, 1}, {0.0, 1.0, 2.0}},
                                 {{0, 1}, {0.0, Point{1, 1}}},
                                 {{0.5, 0.4}, {0.0, 1.0}},
                                 {{-0.1, 1}, {0.0, 1.0}},
                                 {{0, 1.1}, {0.0, 1.0}},
                                 {{0, kNoNumber}, {0.0, 1.0}}};
  for (const Keyframes& keyframes : malformed) EXPECT_FALSE(keyframes.areWellFormed());
}

TEST(Animation, hasADurationOfWhicheverKind) {
  EXPECT_EQ(durationOf(fade(2)), 2);
  EXPECT_EQ(durationOf(fadeInAndOut()), 10);
}

}  // namespace
}  // namespace pelmora::render
