#include "render/Layer.h"

#include "render/tests/Stage.h"

#include <gmock/gmock.h>

namespace pelmora::render {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Layer, startsWithTheDefaultsOfALayer) {
  const Layer layer;
  EXPECT_EQ(layer.anchorPoint(), (Point{0.5, 0.5}));
  EXPECT_EQ(layer.opacity(), 1);
  EXPECT_EQ(layer.scale(), 1);
  EXPECT_EQ(layer.rotation(), 0);
  EXPECT_EQ(layer.zPosition(), 0);
  EXPECT_EQ(layer.shadowOpacity(), 0);
  EXPECT_EQ(layer.cornerRadius(), 0);
  EXPECT_EQ(layer.backgroundColor(), std::nullopt);
  EXPECT_FALSE(layer.needsDisplayOnBoundsChange());
  EXPECT_TRUE(layer.contents().isNull());
}

TEST(Layer, addsTheNewestLast) {
  const auto root = std::make_shared<Layer>();
  const auto first = std::make_shared<Layer>();
  const auto second = std::make_shared<Layer>();
  root->addSublayer(first);
  root->addSublayer(second);
  EXPECT_THAT(root->sublayers(), ElementsAre(first, second));
  root->addSublayer(first);
  EXPECT_THAT(root->sublayers(), ElementsAre(second, first));
}

TEST(Layer, movesFromOneSuperlayerToAnother) {
  const auto one = std::make_shared<Layer>();
  const auto other = std::make_shared<Layer>();
  const auto layer = std::make_shared<Layer>();
  one->addSublayer(layer);
  other->addSublayer(layer);
  EXPECT_EQ(layer->superlayer(), other.get());
  EXPECT_THAT(one->sublayers(), IsEmpty());
}

TEST(Layer, doesNotGoIntoItself) {
  const auto outer = std::make_shared<Layer>();
  const auto inner = std::make_shared<Layer>();
  outer->addSublayer(inner);
  inner->addSublayer(outer);
  outer->addSublayer(outer);
  outer->addSublayer(nullptr);
  EXPECT_EQ(outer->superlayer(), nullptr);
  EXPECT_THAT(outer->sublayers(), ElementsAre(inner));
}

TEST(Layer, leavesItsSublayersWithoutASuperlayer) {
  auto outer = std::make_shared<Layer>();
  const auto inner = std::make_shared<Layer>();
  outer->addSublayer(inner);
  outer.reset();
  EXPECT_EQ(inner->superlayer(), nullptr);
  inner->removeFromSuperlayer();
}

TEST(Layer, mayLeaveASuperlayerThatHeldTheLastReference) {
  const auto outer = std::make_shared<Layer>();
  Layer* inner = nullptr;
  {
    const auto made = std::make_shared<Layer>();
    inner = made.get();
    outer->addSublayer(made);
  }
  inner->removeFromSuperlayer();
  EXPECT_THAT(outer->sublayers(), IsEmpty());
}

TEST(Layer, namesItsAnimationsInTheOrderTheyWereAdded) {
  const auto layer = std::make_shared<Layer>();
  layer->addAnimation(fade(1), "b");
  layer->addAnimation(fade(1), "a");
  EXPECT_THAT(layer->animationKeys(), ElementsAre("b", "a"));
}

TEST(Layer, replacesTheAnimationUnderTheSameKey) {
  const auto layer = std::make_shared<Layer>();
  const auto delegate = std::make_shared<RecordingDelegate>();
  layer->addAnimation(fade(1, delegate), "a");
  layer->addAnimation(fade(2), "a");
  EXPECT_THAT(layer->animationKeys(), ElementsAre("a"));
  EXPECT_THAT(delegate->stops, ElementsAre("opacity removed"));
  EXPECT_EQ(delegate.use_count(), 1);
}

TEST(Layer, replacesAnAnimationByOneOfAnotherKind) {
  const auto layer = std::make_shared<Layer>();
  const auto delegate = std::make_shared<RecordingDelegate>();
  layer->addAnimation(fade(1, delegate), "a");
  layer->addAnimation(fadeInAndOut(), "a");
  EXPECT_THAT(layer->animationKeys(), ElementsAre("a"));
  EXPECT_THAT(delegate->stops, ElementsAre("opacity removed"));
  layer->addAnimation(fade(1), "a");
  EXPECT_THAT(layer->animationKeys(), ElementsAre("a"));
}

TEST(Layer, tellsTheDelegateOfARemovedAnimationThatItDidNotFinish) {
  const auto layer = std::make_shared<Layer>();
  const auto delegate = std::make_shared<RecordingDelegate>();
  layer->addAnimation(fade(1, delegate), "a");
  EXPECT_EQ(delegate.use_count(), 2);
  layer->removeAnimation("unknown");
  layer->removeAnimation("a");
  EXPECT_THAT(delegate->stops, ElementsAre("opacity removed"));
  EXPECT_EQ(delegate.use_count(), 1);
}

TEST(Layer, removesItsAnimationsWhenItGoes) {
  auto layer = std::make_shared<Layer>();
  const auto delegate = std::make_shared<RecordingDelegate>();
  layer->addAnimation(fade(1, delegate), "a");
  layer->addAnimation(fade(1, delegate), "b");
  layer.reset();
  EXPECT_THAT(delegate->stops, ElementsAre("opacity removed", "opacity removed"));
}

}  // namespace
}  // namespace pelmora::render
