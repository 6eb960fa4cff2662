#include "render/LayerTree.h"

#include "render/tests/Stage.h"

#include <gmock/gmock.h>

namespace pelmora::render {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const Rect kBounds{{0, 0}, {20, 10}};

TEST(LayerTree, submitsTheChangesOfOneTurnTogether) {
  Stage stage;
  stage.scheduler.after(1, [&] {
    const auto layer = stage.addLayer(kBounds, {1, 1});
    layer->setPosition({2, 2});
    layer->setContents(plainPicture(20, 10));
    startEntrance(*layer, {3, 3}, {4, 4}, 0);
  });
  stage.scheduler.advanceTo(1);
  ASSERT_EQ(stage.presenter.snapshots.size(), 1U);
  const LayerSnapshot& shown = stage.latest().root.sublayers[0];
  EXPECT_EQ(shown.position, (Point{4, 4}));
  EXPECT_EQ(shown.animations.size(), 4U);
  EXPECT_TRUE(shown.picture);
}

TEST(LayerTree, submitsNothingWhenNothingChanged) {
  Stage stage;
  const auto layer = stage.addLayer(kBounds, {1, 1});
  stage.tree.commit();
  layer->setPosition({1, 1});
  layer->setOpacity(1);
  layer->setBounds(kBounds);
  layer->setUrl("");
  stage.tree.setScale(1);
  stage.tree.commit();
  EXPECT_EQ(stage.presenter.snapshots.size(), 1U);
}

TEST(LayerTree, submitsAgainAfterEveryKindOfChange) {
  Stage stage;
  const auto layer = stage.addLayer(kBounds, {1, 1});
  const std::function<void()> changes[] = {[&] {
                                             layer->setPosition({9, 9});
                                           },
                                           [&] { layer->setOpacity(0.5); },
                                           [&] { layer->setRotation(1); },
                                           [&] { layer->setScale(2); },
                                           [&] {
                                             layer->setAnchorPoint({0, 0});
                                           },
                                           [&] { layer->setZPosition(3); },
                                           [&] {
                                             layer->setBounds({{0, 0}, {5, 5}});
                                           },
                                           [&] { layer->setContents(plainPicture(5, 5)); },
                                           [&] { layer->setCornerRadius(2); },
                                           [&] {
                                             layer->setBackgroundColor(Color{1, 1, 0, 1});
                                           },
                                           [&] { layer->setBackgroundColor(std::nullopt); },
                                           [&] { layer->setShadowOpacity(1); },
                                           [&] { layer->setShadowRadius(7); },
                                           [&] {
                                             layer->setShadowOffset({7, 7});
                                           },
                                           [&] { layer->setRole("card"); },
                                           [&] { layer->setUrl("/a"); },
                                           [&] { layer->addAnimation(fade(1), "a"); },
                                           [&] { layer->addAnimation(fadeInAndOut(), "b"); },
                                           [&] { layer->removeAnimation("a"); },
                                           [&] { stage.tree.setScale(2); },
                                           [&] { layer->removeFromSuperlayer(); }};
  std::size_t expected = 0;
  for (const auto& change : changes) {
    change();
    stage.tree.commit();
    stage.tree.commit();
    EXPECT_EQ(stage.presenter.snapshots.size(), ++expected);
  }
}

TEST(LayerTree, leavesASnapshotAsItWas) {
  Stage stage;
  const auto layer = stage.addLayer(kBounds, {1, 1});
  stage.tree.commit();
  const auto before = stage.presenter.snapshots.back();
  layer->setPosition({8, 8});
  stage.addLayer(kBounds, {2, 2});
  stage.tree.commit();
  EXPECT_EQ(before->root.sublayers.size(), 1U);
  EXPECT_EQ(before->root.sublayers[0].position, (Point{1, 1}));
}

TEST(LayerTree, ordersByZPositionThenByTheOrderOfAdding) {
  Stage stage;
  for (const auto& [role, z] : std::vector<std::pair<std::string, double>>{
           {"label", 3.4028234663852886e38}, {"a", 0}, {"b", 0}, {"below", -1}}) {
    const auto layer = stage.addLayer(kBounds, {0, 0});
    layer->setRole(role);
    layer->setZPosition(z);
  }
  stage.tree.commit();
  std::vector<std::string> roles;
  for (const LayerSnapshot& layer : stage.latest().root.sublayers) roles.push_back(layer.role);
  EXPECT_THAT(roles, ElementsAre("below", "a", "b", "label"));
}

TEST(LayerTree, bakesAPictureOnceUnlessItsLooksChange) {
  Stage stage;
  const auto layer = stage.addLayer(kBounds, {1, 1});
  layer->setContents(plainPicture(20, 10));
  stage.tree.commit();
  const auto first = stage.latest().root.sublayers[0].picture;
  layer->setPosition({5, 5});
  layer->setRotation(1);
  stage.tree.commit();
  EXPECT_EQ(stage.latest().root.sublayers[0].picture, first);
  layer->setShadowOpacity(0.5);
  stage.tree.commit();
  const auto shadowed = stage.latest().root.sublayers[0].picture;
  EXPECT_NE(shadowed, first);
  stage.tree.setScale(2);
  stage.tree.commit();
  EXPECT_NE(stage.latest().root.sublayers[0].picture, shadowed);
}

class FillingDelegate : public LayerDelegate {
 public:
  void drawLayer(Layer* layer, LayerContext& context) override {
    ++drawn;
    context.fillRect(layer->bounds(), {0, 0, 0, 1});
  }
  int drawn = 0;
};

TEST(LayerTree, letsTheDelegateDrawALayerThatNeedsDisplay) {
  Stage stage;
  FillingDelegate delegate;
  stage.root->setDelegate(&delegate);
  stage.root->setNeedsDisplay();
  stage.tree.commit();
  ASSERT_EQ(stage.latest().root.fills.size(), 1U);
  EXPECT_EQ(stage.latest().root.fills[0].rect, stage.root->bounds());
  stage.root->setPosition({1, 1});
  stage.tree.commit();
  EXPECT_EQ(delegate.drawn, 1);
}

TEST(LayerTree, submitsNothingWhenALayerIsDrawnAsItWas) {
  Stage stage;
  FillingDelegate delegate;
  const auto layer = stage.addLayer(kBounds, {1, 1});
  for (Layer* drawn : {stage.root.get(), layer.get()}) {
    drawn->setDelegate(&delegate);
    drawn->setNeedsDisplay();
  }
  stage.tree.commit();
  const auto picture = stage.latest().root.sublayers[0].picture;
  EXPECT_TRUE(picture);
  stage.root->setNeedsDisplay();
  layer->setNeedsDisplay();
  stage.tree.commit();
  EXPECT_EQ(delegate.drawn, 4);
  EXPECT_EQ(stage.presenter.snapshots.size(), 1U);
  stage.root->setPosition({1, 1});
  stage.tree.commit();
  EXPECT_EQ(stage.latest().root.sublayers[0].picture, picture);
}

TEST(LayerTree, submitsWhatALayerIsDrawnAnew) {
  Stage stage;
  FillingDelegate delegate;
  const auto layer = stage.addLayer(kBounds, {1, 1});
  stage.tree.commit();
  layer->setDelegate(&delegate);
  layer->setNeedsDisplay();
  stage.tree.commit();
  ASSERT_EQ(stage.presenter.snapshots.size(), 2U);
  EXPECT_EQ(stage.latest().root.sublayers[0].fills.size(), 1U);
  EXPECT_TRUE(stage.latest().root.sublayers[0].picture);
}

TEST(LayerTree, drawsAgainOnABoundsChangeIfTheLayerNeedsIt) {
  Stage stage;
  FillingDelegate delegate;
  stage.root->setDelegate(&delegate);
  stage.root->setBounds({{0, 0}, {10, 10}});
  stage.tree.commit();
  EXPECT_EQ(delegate.drawn, 0);
  stage.root->setNeedsDisplayOnBoundsChange(true);
  stage.root->setBounds({{0, 0}, {30, 30}});
  stage.tree.commit();
  EXPECT_EQ(delegate.drawn, 1);
}

TEST(LayerTree, endsAnAnimationWhenItsTimeHasRunSinceItsFirstFrame) {
  Stage stage;
  const auto delegate = std::make_shared<RecordingDelegate>();
  const auto layer = stage.addLayer(kBounds, {1, 1});
  layer->addAnimation(fade(1.15, delegate), "a");
  stage.scheduler.advanceTo(3);  // nothing has been shown yet
  EXPECT_THAT(layer->animationKeys(), ElementsAre("a"));
  stage.showFrame();
  stage.scheduler.advanceTo(3 + 1.1499);
  EXPECT_THAT(delegate->stops, IsEmpty());
  stage.scheduler.advanceTo(3 + 1.15);
  EXPECT_THAT(delegate->stops, ElementsAre("opacity finished"));
  EXPECT_THAT(layer->animationKeys(), IsEmpty());
  EXPECT_EQ(delegate.use_count(), 1);
  EXPECT_THAT(stage.latest().root.sublayers[0].animations, IsEmpty());
}

TEST(LayerTree, endsAnimationsOneByOneInOrderOfTheirEnds) {
  Stage stage;
  const auto layer = stage.addLayer(kBounds, {1, 1});
  startEntrance(*layer, {0, 0}, {1, 1}, 0);
  stage.showFrame();
  std::vector<std::size_t> left;
  for (const double time : {0.39, 0.4, 0.7, 1.0, 1.15}) {
    stage.scheduler.advanceTo(time);
    left.push_back(layer->animationKeys().size());
  }
  EXPECT_THAT(left, ElementsAre(4, 3, 2, 1, 0));
}

TEST(LayerTree, endsAKeyframeAnimationWhenItsTimeHasRun) {
  Stage stage;
  const auto layer = stage.addLayer(kBounds, {1, 1});
  layer->setOpacity(0);
  layer->addAnimation(fadeInAndOut(), "a");
  stage.showFrame();
  EXPECT_TRUE(stage.latest().root.sublayers[0].animations[0].keyframes);
  stage.scheduler.advanceTo(9.999);
  EXPECT_THAT(layer->animationKeys(), ElementsAre("a"));
  stage.scheduler.advanceTo(10);
  EXPECT_THAT(layer->animationKeys(), IsEmpty());
  EXPECT_THAT(stage.latest().root.sublayers[0].animations, IsEmpty());
  EXPECT_FALSE(stage.latest().movesAt(10));
}

TEST(LayerTree, beginsAtOnceWithAPresenterThatShowsNothing) {
  Stage stage;
  stage.presenter.isHidden = true;
  stage.scheduler.after(2, [&] { stage.addLayer(kBounds, {1, 1})->addAnimation(fade(1), "a"); });
  stage.scheduler.advanceTo(2);
  EXPECT_EQ(stage.latest().root.sublayers[0].animations[0].begin->time(), 2);
  stage.scheduler.advanceTo(3);
  EXPECT_THAT(stage.latest().root.sublayers[0].animations, IsEmpty());
}

TEST(LayerTree, runsAnimationsWithoutAPresenter) {
  Stage stage;
  stage.tree.setPresenter(nullptr);
  const auto layer = stage.addLayer(kBounds, {1, 1});
  layer->addAnimation(fade(1), "a");
  stage.tree.commit();
  stage.scheduler.advanceTo(1);
  EXPECT_THAT(layer->animationKeys(), IsEmpty());
  EXPECT_THAT(stage.presenter.snapshots, IsEmpty());
}

/// As a card does: it holds its layer, and is told of the end of the turn.
class Card : public AnimationDelegate {
 public:
  explicit Card(std::shared_ptr<Layer> layer) : _layer(std::move(layer)) {}
  ~Card() override { _layer->removeFromSuperlayer(); }
  void animationDidStop(const BasicAnimation& /*animation*/, bool /*finished*/) override {}

 private:
  std::shared_ptr<Layer> _layer;
};

TEST(LayerTree, keepsADroppedDelegateUntilItsAnimationEnds) {
  Stage stage;
  std::weak_ptr<Card> card;
  {
    const auto layer = stage.addLayer(kBounds, {1, 1});
    const auto made = std::make_shared<Card>(layer);
    startEntrance(*layer, {0, 0}, {1, 1}, 0, made);
    card = made;
  }
  stage.showFrame();
  stage.scheduler.advanceTo(1.1);
  EXPECT_FALSE(card.expired());
  EXPECT_EQ(stage.latest().root.sublayers.size(), 1U);
  stage.scheduler.advanceTo(1.15);
  EXPECT_TRUE(card.expired());
  EXPECT_THAT(stage.latest().root.sublayers, IsEmpty());
}

TEST(LayerTree, endsAnimationsOfALayerThatWentBeforeAnyFrameShowedIt) {
  Stage stage;
  const auto delegate = std::make_shared<RecordingDelegate>();
  const auto layer = stage.addLayer(kBounds, {1, 1});
  layer->addAnimation(fade(1, delegate), "a");
  layer->removeFromSuperlayer();
  stage.tree.commit();
  stage.scheduler.advanceTo(1);
  EXPECT_THAT(delegate->stops, ElementsAre("opacity finished"));
}

TEST(LayerTree, endsAnimationsThatCameWithTheirLayer) {
  Stage stage;
  const auto outer = std::make_shared<Layer>();
  const auto inner = std::make_shared<Layer>();
  outer->addSublayer(inner);
  inner->addAnimation(fade(1), "a");
  stage.root->addSublayer(outer);
  stage.showFrame();
  stage.scheduler.advanceTo(1);
  EXPECT_THAT(inner->animationKeys(), IsEmpty());
}

TEST(LayerTree, goesOnEndingAnimationsOfARemovedLayer) {
  Stage stage;
  const auto layer = stage.addLayer(kBounds, {1, 1});
  layer->addAnimation(fade(1), "a");
  stage.showFrame();
  layer->removeFromSuperlayer();
  stage.scheduler.advanceTo(0.9);
  EXPECT_THAT(layer->animationKeys(), ElementsAre("a"));
  stage.scheduler.advanceTo(1);
  EXPECT_THAT(layer->animationKeys(), IsEmpty());
}

TEST(LayerTree, arrangesNoTurnsOfTheRunLoopAtRest) {
  Stage stage;
  stage.addLayer(kBounds, {1, 1})->addAnimation(fade(1), "a");
  stage.showFrame();
  int turns = 0;
  stage.scheduler.setEndOfTurn([&] {
    ++turns;
    stage.tree.commit();
  });
  stage.scheduler.advanceTo(86400);
  EXPECT_EQ(turns, 1);
}

TEST(LayerTree, removesAnimationsWhenItGoes) {
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler(clock);
  const auto root = std::make_shared<Layer>();
  const auto delegate = std::make_shared<RecordingDelegate>();
  RecordingPresenter presenter(clock);
  {
    LayerTree tree(clock, scheduler, root);
    tree.setPresenter(&presenter);
    root->addAnimation(fade(1, delegate), "shown");
    tree.commit();
    presenter.snapshots.back()->beginAnimations(0);
    scheduler.runPosted();
    root->addAnimation(fade(1, delegate), "unseen");
  }
  EXPECT_THAT(delegate->stops, ElementsAre("opacity removed", "opacity removed"));
  scheduler.advanceTo(10);
  root->setOpacity(0.5);
}

TEST(LayerTree, mayGoBeforeAFrameShowsItsSnapshot) {
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler(clock);
  const auto root = std::make_shared<Layer>();
  RecordingPresenter presenter(clock);
  {
    LayerTree tree(clock, scheduler, root);
    tree.setPresenter(&presenter);
    root->addAnimation(fade(1), "a");
    tree.commit();
  }
  presenter.snapshots.back()->beginAnimations(0);
  scheduler.advanceTo(10);
  EXPECT_TRUE(presenter.snapshots.back()->root.animations[0].begin->isKnown());
}

class EndingDelegate : public AnimationDelegate {
 public:
  explicit EndingDelegate(std::unique_ptr<LayerTree>& tree) : _tree(tree) {}
  void animationDidStop(const BasicAnimation& /*animation*/, bool /*finished*/) override {
    _tree.reset();
  }

 private:
  std::unique_ptr<LayerTree>& _tree;
};

TEST(LayerTree, mayBeEndedByADelegate) {
  platform::SteppedClock clock;
  platform::SteppedScheduler scheduler(clock);
  const auto root = std::make_shared<Layer>();
  auto tree = std::make_unique<LayerTree>(clock, scheduler, root);
  root->addAnimation(fade(1, std::make_shared<EndingDelegate>(tree)), "a");
  root->addAnimation(fade(1), "b");
  tree->commit();
  scheduler.advanceTo(2);
  EXPECT_EQ(tree, nullptr);
  EXPECT_THAT(root->animationKeys(), IsEmpty());
}

}  // namespace
}  // namespace pelmora::render
