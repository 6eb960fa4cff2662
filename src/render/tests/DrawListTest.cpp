#include "render/DrawList.h"

#include "render/tests/Stage.h"
#include "shared/Random.h"

#include <gmock/gmock.h>

namespace pelmora::render {
namespace {

struct DrawListTest : testing::Test {
  std::shared_ptr<Layer> addPicture(const Point& position) {
    auto layer = stage.addLayer({{0, 0}, {20, 10}}, position);
    layer->setContents(plainPicture(20, 10));
    return layer;
  }
  std::vector<DrawItem> list(double time = 0) {
    stage.tree.commit();
    return drawListOf(stage.latest(), time);
  }
  /// So that it is drawn by itself.
  static void keepMoving(Layer& layer) {
    layer.addAnimation({KeyPath::scale, 1, {}, 1.0, 1.0, nullptr}, "moving");
  }
  /// Where a corner of the layer's bounds is on the display.
  static QPointF corner(const DrawItem& item, Qt::Corner which) {
    const QRectF& bounds = item.picture->bounds;
    switch (which) {
      case Qt::TopLeftCorner:
        return item.toTarget.map(bounds.topLeft());
      case Qt::TopRightCorner:
        return item.toTarget.map(bounds.topRight());
      case Qt::BottomLeftCorner:
        return item.toTarget.map(bounds.bottomLeft());
      case Qt::BottomRightCorner:
        break;
    }
    return item.toTarget.map(bounds.bottomRight());
  }
  static void expectNear(const QPointF& is, const QPointF& expected) {
    EXPECT_NEAR(is.x(), expected.x(), 1e-9);
    EXPECT_NEAR(is.y(), expected.y(), 1e-9);
  }

  Stage stage{{200, 100}};
};

TEST_F(DrawListTest, turnsYOver) {
  addPicture({50, 30});
  const auto items = list();
  ASSERT_EQ(items.size(), 1U);
  expectNear(corner(items[0], Qt::TopLeftCorner), {40, 65});
  expectNear(corner(items[0], Qt::BottomRightCorner), {60, 75});
}

TEST_F(DrawListTest, worksInDevicePixels) {
  stage.tree.setScale(1.5);
  addPicture({50, 31});
  const auto items = list();
  expectNear(corner(items[0], Qt::TopLeftCorner), {60, 96});
  expectNear(corner(items[0], Qt::BottomRightCorner), {90, 111});
}

TEST_F(DrawListTest, putsWhatLiesStillOntoWholePixels) {
  const auto layer = addPicture({50.3, 30.4});
  expectNear(corner(list()[0], Qt::TopLeftCorner), {40, 65});
  layer->addAnimation(fade(1), "fade");
  layer->setOpacity(0.5);
  stage.showFrame();
  expectNear(corner(list(0.5)[0], Qt::TopLeftCorner), {40, 65});
  layer->setBounds({{0, 0}, {20.4, 10.4}});
  EXPECT_EQ(list(0.5)[0].toTarget.type(), QTransform::TxTranslate);
}

TEST_F(DrawListTest, leavesWhatGlidesOrIsTiltedWhereItIs) {
  const auto layer = addPicture({50.3, 30.4});
  layer->addAnimation({.keyPath = KeyPath::position,
                       .duration = 1,
                       .fromValue = Point{50.3, 30.4},
                       .toValue = Point{51.3, 30.4}},
                      "glide");
  stage.showFrame();
  expectNear(corner(list(0.5)[0], Qt::TopLeftCorner), {40.8, 64.6});
  expectNear(corner(list(1)[0], Qt::TopLeftCorner), {40, 65});
  layer->setRotation(kPi / 2);
  expectNear(corner(list(1)[0], Qt::TopLeftCorner), {45.3, 79.6});
}

TEST_F(DrawListTest, turnsCounterclockwise) {
  addPicture({50, 30})->setRotation(kPi / 2);
  const auto items = list();
  // The upper left corner goes to the lower left.
  expectNear(corner(items[0], Qt::TopLeftCorner), {45, 80});
  expectNear(corner(items[0], Qt::TopRightCorner), {45, 60});
}

TEST_F(DrawListTest, scalesAboutTheAnchorPoint) {
  const auto layer = addPicture({50, 30});
  layer->setAnchorPoint({0, 0});
  layer->setScale(0.25);
  const auto items = list();
  expectNear(corner(items[0], Qt::BottomLeftCorner), {50, 70});
  expectNear(corner(items[0], Qt::TopRightCorner), {55, 67.5});
}

TEST_F(DrawListTest, placesSublayersInTheirSuperlayersBounds) {
  const auto outer = stage.addLayer({{-8, -2}, {36, 14}}, {10, 20});
  outer->setAnchorPoint({0, 0});
  const auto inner = std::make_shared<Layer>();
  inner->setBounds({{0, 0}, {20, 10}});
  inner->setAnchorPoint({0, 0});
  inner->setContents(plainPicture(20, 10));
  outer->addSublayer(inner);
  keepMoving(*inner);
  const auto items = list();
  ASSERT_EQ(items.size(), 1U);
  expectNear(corner(items[0], Qt::BottomLeftCorner), {18, 78});
}

TEST_F(DrawListTest, multipliesOpacitiesDownToWhatIsDrawnByItself) {
  const auto outer = addPicture({50, 50});
  const auto inner = std::make_shared<Layer>();
  inner->setBounds({{0, 0}, {5, 5}});
  inner->setContents(plainPicture(5, 5));
  outer->addSublayer(inner);
  outer->setOpacity(0.5);
  inner->setOpacity(0.5);
  keepMoving(*inner);
  const auto items = list();
  ASSERT_EQ(items.size(), 2U);
  EXPECT_EQ(items[0].opacity, 0.5);
  EXPECT_EQ(items[1].opacity, 0.25);
}

TEST_F(DrawListTest, leavesOutWhatIsWhollyTransparent) {
  addPicture({50, 50})->setOpacity(0);
  EXPECT_THAT(list(), testing::IsEmpty());
}

TEST_F(DrawListTest, tellsWhatMovesAndWhatRests) {
  addPicture({50, 50});
  const auto moving = addPicture({70, 50});
  keepMoving(*moving);
  const auto items = list();
  ASSERT_EQ(items.size(), 2U);
  EXPECT_FALSE(items[0].moves);
  EXPECT_TRUE(items[1].moves);
}

TEST_F(DrawListTest, takesSublayersAsMovingWithTheirSuperlayer) {
  const auto outer = addPicture({50, 50});
  const auto resting = std::make_shared<Layer>();
  const auto moving = std::make_shared<Layer>();
  for (const auto& layer : {resting, moving}) {
    layer->setBounds({{0, 0}, {5, 5}});
    layer->setContents(plainPicture(5, 5));
    outer->addSublayer(layer);
  }
  keepMoving(*moving);
  auto items = list();
  ASSERT_EQ(items.size(), 3U);
  EXPECT_FALSE(items[1].moves);
  EXPECT_TRUE(items[2].moves);
  keepMoving(*outer);
  items = list();
  EXPECT_TRUE(items[1].moves);
}

TEST_F(DrawListTest, drawsNewerCardsAboveOlderOnes) {
  const auto first = addPicture({50, 50});
  const auto second = addPicture({50, 50});
  auto items = list();
  const auto top = items[1].picture;
  first->setZPosition(1);
  items = list();
  EXPECT_EQ(items[0].picture, top);
}

class BlackDelegate : public LayerDelegate {
 public:
  void drawLayer(Layer* layer, LayerContext& context) override {
    context.fillRect(layer->bounds(), {0, 0, 0, 1});
    context.fillRect({{0, 0}, {10, 20}}, {1, 0, 0, 1});
  }
};

TEST_F(DrawListTest, takesTheRootsFillsAsBackground) {
  BlackDelegate delegate;
  stage.root->setDelegate(&delegate);
  stage.root->setNeedsDisplay();
  stage.tree.setScale(2);
  stage.tree.commit();
  const auto background = backgroundOf(stage.latest());
  ASSERT_EQ(background.size(), 2U);
  EXPECT_EQ(background[0].rect, QRectF(0, 0, 400, 200));
  EXPECT_EQ(background[1].rect, QRectF(0, 160, 20, 40));
  EXPECT_EQ(background[1].color, QColor(Qt::red));
}

TEST_F(DrawListTest, beginsTheBackgroundWithTheRootsColour) {
  stage.root->setBackgroundColor(Color{0, 0, 1, 1});
  stage.tree.commit();
  const auto background = backgroundOf(stage.latest());
  ASSERT_EQ(background.size(), 1U);
  EXPECT_EQ(background[0].rect, QRectF(0, 0, 200, 100));
  EXPECT_EQ(background[0].color, QColor(Qt::blue));
}

TEST_F(DrawListTest, listsALayerByItselfFromTheUpperLeftOfItsBounds) {
  const auto outer = addPicture({50, 50});
  outer->setRotation(1);
  outer->setOpacity(0);
  const auto inner = std::make_shared<Layer>();
  inner->setBounds({{0, 0}, {4, 4}});
  inner->setAnchorPoint({0, 0});
  inner->setPosition({2, 3});
  inner->setContents(plainPicture(4, 4));
  outer->addSublayer(inner);
  keepMoving(*inner);
  stage.tree.commit();
  const auto items = drawListOf(stage.latest().root.sublayers[0], QSizeF(40, 20));
  ASSERT_EQ(items.size(), 2U);
  expectNear(corner(items[0], Qt::TopLeftCorner), {0, 0});
  expectNear(corner(items[0], Qt::BottomRightCorner), {40, 20});
  expectNear(corner(items[1], Qt::BottomLeftCorner), {4, 14});
  expectNear(corner(items[1], Qt::TopRightCorner), {12, 6});
  EXPECT_EQ(items[1].opacity, 1);
}

TEST_F(DrawListTest, comparesListsByWhatIsSeen) {
  addPicture({50, 50});
  const auto one = list();
  addPicture({70, 50});
  const auto two = list();
  EXPECT_TRUE(lookAlike(one, one));
  EXPECT_FALSE(lookAlike(one, two));
}

TEST_F(DrawListTest, comparesByWhatIsSeen) {
  addPicture({50, 50});
  const auto items = list();
  DrawItem other = items[0];
  other.moves = true;
  EXPECT_TRUE(other.looksLike(items[0]));
  other.opacity = 0.5;
  EXPECT_FALSE(other.looksLike(items[0]));
}

}  // namespace
}  // namespace pelmora::render
