#include "render/Snapshot.h"

#include "render/tests/Stage.h"
#include "shared/Random.h"

#include <gtest/gtest.h>

namespace pelmora::render {
namespace {

struct SnapshotTest : testing::Test {
  SnapshotTest() {
    startEntrance(*card, {40, 30}, {120, 60}, 0.1);
    stage.tree.commit();
  }
  [[nodiscard]] const LayerSnapshot& shown() const { return stage.latest().root.sublayers[0]; }

  Stage stage;
  std::shared_ptr<Layer> card = stage.addLayer({{0, 0}, {60, 40}}, {0, 0});
};

TEST_F(SnapshotTest, showsTheFirstValuesUntilAFrameHasShownIt) {
  const Pose pose = presentationOf(shown(), 1000);
  EXPECT_EQ(pose, (Pose{{40, 30}, 1.3, 0, -0.5}));
  EXPECT_TRUE(stage.latest().movesAt(1000));
}

TEST_F(SnapshotTest, hasOpacityOneInTheModelWhileItShowsZero) {
  stage.latest().beginAnimations(5);
  EXPECT_EQ(shown().opacity, 1);
  EXPECT_EQ(presentationOf(shown(), 5).opacity, 0);
}

TEST_F(SnapshotTest, followsEachCurveFromTheFrameThatFirstShowedIt) {
  using Name = MediaTimingFunction::Name;
  stage.latest().beginAnimations(5);
  stage.latest().beginAnimations(6);
  const Pose pose = presentationOf(shown(), 5.2);
  const double moved = MediaTimingFunction(Name::easeOut).valueAt(0.2);
  EXPECT_NEAR(pose.position.x, 40 + 80 * moved, 1e-9);
  EXPECT_NEAR(pose.position.y, 30 + 30 * moved, 1e-9);
  EXPECT_NEAR(pose.scale, 1.3 - 0.3 * MediaTimingFunction(Name::easeIn).valueAt(0.2 / 0.7), 1e-9);
  EXPECT_NEAR(pose.opacity, MediaTimingFunction(Name::easeOut).valueAt(0.5), 1e-9);
  EXPECT_NEAR(pose.rotation, -0.5 + 0.6 * MediaTimingFunction(Name::easeOut).valueAt(0.2 / 1.15),
              1e-9);
}

TEST_F(SnapshotTest, endsAtTheModelsValuesExactly) {
  stage.latest().beginAnimations(5);
  EXPECT_EQ(presentationOf(shown(), 5 + 1.15), (Pose{{120, 60}, 1, 1, 0.1}));
  // And comes there smoothly: a moment before, it is as good as there.
  const Pose before = presentationOf(shown(), 5 + 1.15 - 1e-6);
  EXPECT_NEAR(before.rotation, 0.1, 1e-9);
}

TEST_F(SnapshotTest, isAtTheFirstValuesBeforeItsBegin) {
  stage.latest().beginAnimations(5);
  EXPECT_EQ(presentationOf(shown(), 4.9), (Pose{{40, 30}, 1.3, 0, -0.5}));
}

TEST_F(SnapshotTest, givesTheSamePoseAfterManySmallStepsAsAfterOneLargeOne) {
  stage.latest().beginAnimations(0);
  Pose stepped;
  for (int step = 1; step <= 132; ++step) stepped = presentationOf(shown(), step * 0.001);
  EXPECT_EQ(stepped, presentationOf(shown(), 132 * 0.001));
}

TEST_F(SnapshotTest, restsWhenTheLastAnimationIsOver) {
  stage.latest().beginAnimations(5);
  EXPECT_TRUE(stage.latest().movesAt(5 + 1.149));
  EXPECT_FALSE(stage.latest().movesAt(5 + 1.15));
  EXPECT_TRUE(movesAt(shown(), 6));
  EXPECT_FALSE(movesAt(stage.latest().root, 6));
}

TEST_F(SnapshotTest, listsTheAnimationsWithAllThatDescribesThem) {
  ASSERT_EQ(shown().animations.size(), 4U);
  const AnimationSnapshot& move = shown().animations[0];
  EXPECT_EQ(move.key, "FadeIn");
  EXPECT_EQ(move.keyPath, KeyPath::position);
  EXPECT_EQ(std::get<Point>(move.fromValue), (Point{40, 30}));
  EXPECT_EQ(std::get<Point>(move.toValue), (Point{120, 60}));
  EXPECT_EQ(move.duration, 1.0);
  EXPECT_STREQ(move.timingFunction.description(), "easeOut");
  EXPECT_FALSE(move.begin->isKnown());
  EXPECT_EQ(shown().animations[3].key, "TheRotation");
}

TEST(Snapshot, ignoresAnAnimationWhoseValuesDoNotFitItsAttribute) {
  Stage stage;
  const auto layer = stage.addLayer({{0, 0}, {10, 10}}, {50, 50});
  layer->addAnimation({KeyPath::position, 1, {}, 3.0, 4.0, nullptr}, "odd");
  layer->addAnimation({KeyPath::opacity, 1, {}, Point{0, 0}, 1.0, nullptr}, "odder");
  stage.showFrame();
  EXPECT_EQ(presentationOf(stage.latest().root.sublayers[0], 0.5), (Pose{{50, 50}, 1, 1, 0}));
}

TEST(Snapshot, takesAnAnimationWithoutDurationAsOver) {
  Stage stage;
  stage.addLayer({{0, 0}, {10, 10}}, {50, 50})->addAnimation(fade(0), "a");
  stage.tree.commit();
  EXPECT_EQ(presentationOf(stage.latest().root.sublayers[0], 0).opacity, 1);
  EXPECT_FALSE(stage.latest().movesAt(0));
}

struct KeyframesTest : testing::Test {
  void start(KeyframeAnimation animation) {
    layer->addAnimation(std::move(animation), "a");
    stage.tree.commit();
  }
  [[nodiscard]] Pose poseAt(double time) const {
    return presentationOf(stage.latest().root.sublayers[0], time);
  }
  [[nodiscard]] double opacityAt(double time) const { return poseAt(time).opacity; }

  Stage stage;
  std::shared_ptr<Layer> layer = stage.addLayer({{0, 0}, {10, 10}}, {50, 50});
};

TEST_F(KeyframesTest, leadEvenlyFromEachValueToTheNext) {
  layer->setOpacity(0.3);
  start(fadeInAndOut());
  stage.latest().beginAnimations(100);
  const std::pair<double, double> expected[] = {{0, 0},   {1, 0.4}, {2, 0.8},
                                                {5, 0.8}, {8, 0.8}, {9, 0.4}};
  for (const auto& [seconds, opacity] : expected) {
    EXPECT_NEAR(opacityAt(100 + seconds), opacity, 1e-12) << seconds;
  }
  EXPECT_EQ(opacityAt(105), 0.8);
  EXPECT_NEAR(opacityAt(110 - 1e-6), 0, 1e-6);
  EXPECT_EQ(opacityAt(110), 0.3);  // the layer's own
}

TEST_F(KeyframesTest, showTheFirstValueUntilTheyBegin) {
  start(fadeInAndOut());
  EXPECT_EQ(opacityAt(1000), 0);
  stage.latest().beginAnimations(1000);
  EXPECT_EQ(opacityAt(999), 0);
}

TEST_F(KeyframesTest, holdTheOuterValuesOutsideOfTheirTimes) {
  start({.keyPath = KeyPath::position,
         .duration = 10,
         .keyTimes = {0.25, 0.75},
         .values = {Point{0, 10}, Point{40, 30}}});
  EXPECT_EQ(poseAt(0).position, (Point{0, 10}));
  stage.latest().beginAnimations(0);
  EXPECT_EQ(poseAt(1).position, (Point{0, 10}));
  EXPECT_EQ(poseAt(5).position, (Point{20, 20}));
  EXPECT_EQ(poseAt(7.5).position, (Point{40, 30}));
  EXPECT_EQ(poseAt(9).position, (Point{40, 30}));
}

TEST_F(KeyframesTest, jumpBetweenValuesOfTheSameTime) {
  start({.keyPath = KeyPath::scale,
         .duration = 10,
         .keyTimes = {0, 0.5, 0.5, 1},
         .values = {1.0, 2.0, 5.0, 5.0}});
  stage.latest().beginAnimations(0);
  EXPECT_NEAR(poseAt(4.999999).scale, 2, 1e-5);
  EXPECT_EQ(poseAt(5).scale, 5);
}

TEST_F(KeyframesTest, moveNothingWhenTheyAreNotWellFormedOrDoNotFit) {
  layer->setOpacity(0.3);
  KeyframeAnimation few = fadeInAndOut();
  few.keyTimes.pop_back();
  KeyframeAnimation mixed = fadeInAndOut();
  mixed.values[1] = Point{1, 1};
  KeyframeAnimation unfit = fadeInAndOut();
  unfit.keyPath = KeyPath::position;
  for (const KeyframeAnimation& odd :
       {KeyframeAnimation{KeyPath::opacity, 10, {}, {}},
        KeyframeAnimation{KeyPath::opacity, 10, {}, {0.0, 1.0}}, few, mixed, unfit}) {
    start(odd);
    stage.latest().beginAnimations(0);
    EXPECT_EQ(poseAt(5), (Pose{{50, 50}, 1, 0.3, 0}));
  }
}

TEST_F(KeyframesTest, restWhenTheyAreOver) {
  start(fadeInAndOut());
  EXPECT_TRUE(stage.latest().movesAt(0));
  stage.latest().beginAnimations(0);
  EXPECT_TRUE(stage.latest().movesAt(9.999));
  EXPECT_FALSE(stage.latest().movesAt(10));
}

}  // namespace
}  // namespace pelmora::render
