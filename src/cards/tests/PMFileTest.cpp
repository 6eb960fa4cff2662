#include "cards/PMFile.h"

#include "cards/tests/FakeOwnerView.h"
#include "cards/tests/PlainPicture.h"
#include "render/LayerTree.h"
#include "render/Snapshot.h"
#include "shared/Random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <variant>

namespace pelmora::cards {

namespace {

class PMFileTest : public testing::Test {
 protected:
  PMFileTest() { srandom(42); }
  ~PMFileTest() override {
    const auto layers = _view.backing->sublayers();
    for (const auto& layer : layers) endTurn(*layer);
  }

  /// A card and its turn hold each other until a tree of layers ends the turn.
  static void endTurn(render::Layer& layer) { layer.removeAnimation("TheRotation"); }

  std::shared_ptr<PMFile> make(const platform::Image& image) {
    return PMFile::make(_url, image, &_view);
  }
  void useFrame(int value) { _view.fakes.preferences.setObject("UsePolaroid", value); }

  const FilePath _url{"/pictures/Lake.jpg"};
  const platform::Image _image = plainPicture({750, 500}, {75, 50}, {1, 2, 3, 255});
  FakeOwnerView _view;
};

/// Keeps the last snapshot, for what only a tree tells of a layer.
class LastSnapshot : public render::Presenter {
 public:
  void submit(std::shared_ptr<const render::Snapshot> snapshot) override {
    _snapshot = std::move(snapshot);
  }
  [[nodiscard]] const render::Snapshot& get() const { return *_snapshot; }

 private:
  std::shared_ptr<const render::Snapshot> _snapshot;
};

/// In a small view, as each snapshot paints the shadows.
class EntranceTest : public PMFileTest {
 protected:
  EntranceTest() {
    useFrame(0);
    _view.rect = {{0, 0}, {160, 100}};
    _tree.setPresenter(&_presenter);
  }

  /// The animations of the newest card as a frame would show them.
  std::vector<render::AnimationSnapshot> animations() {
    _tree.commit();
    return _presenter.get().root.sublayers.back().animations;
  }

  const platform::Image _small = plainPicture({75, 50}, {3, 2}, {1, 2, 3, 255});
  LastSnapshot _presenter;
  render::LayerTree _tree{_view.fakes.clock, _view.fakes.scheduler, _view.backing};
};

double number(const render::AnimatableValue& value) { return std::get<double>(value); }

/// The draws that a framed card makes before it is placed.
void skipCaptionDraws() {
  static_cast<void>(randomIntBetween(0, 5));
  static_cast<void>(randomIntBetween(1, 10));
}

/// A seed with which a framed card draws that number for its caption's colour.
unsigned seedThatDraws(int number) {
  for (unsigned seed = 0;; ++seed) {
    srandom(seed);
    static_cast<void>(randomIntBetween(0, 5));
    if (randomIntBetween(1, 10) == number) return seed;
  }
}

/// The darkest colour in the lowest rows of a card.
QRgb inkOf(const QImage& artwork, int rows) {
  const auto lightness = [](QRgb color) { return qRed(color) + qGreen(color) + qBlue(color); };
  QRgb darkest = qRgb(255, 255, 255);
  for (int y = artwork.height() - rows; y < artwork.height(); ++y) {
    for (int x = 0; x < artwork.width(); ++x) {
      const QRgb color = artwork.pixel(x, y);
      if (lightness(color) < lightness(darkest)) darkest = color;
    }
  }
  return darkest;
}

}  // namespace

TEST_F(PMFileTest, writesItsCaptionBlackSevenTimesInTenElseInAColour) {
  useFrame(1);
  const platform::Image narrow = plainPicture({250, 500}, {25, 50}, {1, 2, 3, 255});
  const std::pair<int, QRgb> inks[] = {{1, qRgb(0, 0, 0)},
                                       {7, qRgb(0, 0, 0)},
                                       {8, qRgb(0, 0, 128)},
                                       {9, qRgb(204, 0, 0)},
                                       {10, qRgb(0, 128, 26)}};
  for (const auto& [drawn, expected] : inks) {
    srandom(seedThatDraws(drawn));
    const QRgb ink = inkOf(make(narrow)->layer()->contents(), 108);
    EXPECT_NEAR(qRed(ink), qRed(expected), 2) << drawn;
    EXPECT_NEAR(qGreen(ink), qGreen(expected), 2) << drawn;
    EXPECT_NEAR(qBlue(ink), qBlue(expected), 2) << drawn;
  }
}

TEST_F(PMFileTest, showsThePictureItselfForAnyValueButOne) {
  for (const int value : {0, 2, -1}) {
    useFrame(value);
    const auto card = make(_image);
    EXPECT_EQ(card->layer()->bounds(), (Rect{{0, 0}, {750, 500}}));
    EXPECT_EQ(card->layer()->contents().constBits(), _image.pixels->bytes.data());
  }
}

TEST_F(PMFileTest, drawsNoFontAndNoColourWithoutAFrame) {
  useFrame(0);
  const auto card = make(_image);
  const long next = random();
  srandom(42);
  for (int draws = 0; draws < 7; ++draws) static_cast<void>(random());
  EXPECT_EQ(next, random());
}

TEST_F(PMFileTest, drawsFontColourAndPlacesInThatOrderWithAFrame) {
  useFrame(1);
  const auto card = make(_image);
  const long next = random();
  srandom(42);
  skipCaptionDraws();
  const Size size{810, 640};
  static_cast<void>(randomPointForSizeInRect(size, _view.rect));
  const Point end = randomPointForSizeInRect(size, _view.rect);
  EXPECT_EQ(card->layer()->position(), (Point{end.x + 405, end.y + 320}));
  static_cast<void>(randomDoubleBetween(1.1, 1.5));
  static_cast<void>(randomDoubleBetween(-35, 35));
  EXPECT_EQ(card->layer()->rotation(), DegreesToRadians(randomDoubleBetween(-10, 10)));
  EXPECT_EQ(next, random());
}

TEST_F(PMFileTest, drawsPlacesInTheSameOrderWithoutAFrame) {
  useFrame(0);
  const auto card = make(_image);
  srandom(42);
  const Size size{750, 500};
  static_cast<void>(randomPointForSizeInRect(size, _view.rect));
  const Point end = randomPointForSizeInRect(size, _view.rect);
  EXPECT_EQ(card->layer()->position(), (Point{end.x + 375, end.y + 250}));
}

TEST_F(PMFileTest, isFramedInProportionToTheViewsHeight) {
  useFrame(1);
  const auto card = make(_image);
  EXPECT_EQ(card->layer()->bounds(), (Rect{{0, 0}, {810, 640}}));
  EXPECT_EQ(card->layer()->contents().size(), QSize(810, 640));
}

TEST_F(PMFileTest, drawsItsArtworkAtTheDisplaysPixels) {
  useFrame(1);
  _view.scale = 2;
  const auto card = make(_image);
  EXPECT_EQ(card->layer()->bounds(), (Rect{{0, 0}, {810, 640}}));
  EXPECT_EQ(card->layer()->contents().size(), QSize(1620, 1280));
}

TEST_F(PMFileTest, handsItsArtworkToTheLayer) {
  useFrame(1);
  const auto card = make(_image);
  EXPECT_TRUE(card->image().isNull());
  EXPECT_FALSE(card->layer()->contents().isNull());
  EXPECT_EQ(card->url(), _url);
}

TEST_F(PMFileTest, setsItsLayerUp) {
  useFrame(0);
  const auto card = make(_image);
  const render::Layer& layer = *card->layer();
  EXPECT_EQ(layer.role(), "card");
  EXPECT_EQ(layer.url(), "/pictures/Lake.jpg");
  EXPECT_EQ(layer.anchorPoint(), (Point{0.5, 0.5}));
  EXPECT_TRUE(layer.needsDisplayOnBoundsChange());
  EXPECT_EQ(layer.shadowOffset(), (Size{-7.5, -7.5}));
  EXPECT_DOUBLE_EQ(layer.shadowRadius(), 10);
  EXPECT_DOUBLE_EQ(layer.shadowOpacity(), 0.75);
  EXPECT_DOUBLE_EQ(layer.cornerRadius(), 0);
  EXPECT_DOUBLE_EQ(layer.scale(), 1);
}

TEST_F(PMFileTest, isOpaqueInTheModelFromTheFirstFrameOn) {
  EXPECT_DOUBLE_EQ(make(_image)->layer()->opacity(), 1);
}

TEST_F(PMFileTest, startsItsFourAnimationsInOrder) {
  EXPECT_EQ(make(_image)->layer()->animationKeys(),
            (std::vector<std::string>{"FadeIn", "TheScale", "TheOpacity", "TheRotation"}));
}

TEST_F(PMFileTest, liesAboveEveryOlderCard) {
  const auto older = make(_image);
  const auto newer = make(_image);
  ASSERT_EQ(_view.backing->sublayers().size(), 2U);
  EXPECT_EQ(_view.backing->sublayers()[0], older->layer());
  EXPECT_EQ(_view.backing->sublayers()[1], newer->layer());
}

TEST_F(PMFileTest, keepsTheWholeCardInsideTheView) {
  useFrame(0);
  for (unsigned seed = 0; seed < 50; ++seed) {
    srandom(seed);
    const Point center = make(_image)->layer()->position();
    EXPECT_GE(center.x, 375);
    EXPECT_LE(center.x, 1600 - 375);
    EXPECT_GE(center.y, 250);
    EXPECT_LE(center.y, 1000 - 250);
  }
}

TEST_F(PMFileTest, placesACardLargerThanTheViewBetweenTheReversedBounds) {
  useFrame(0);
  _view.rect = {{100, 0}, {400, 1000}};  // 350 points narrower than the card
  for (unsigned seed = 0; seed < 50; ++seed) {
    srandom(seed);
    const double left = make(_image)->layer()->position().x - 375;
    EXPECT_GE(left, 100 - 350);
    EXPECT_LE(left, 100);
  }
}

TEST_F(PMFileTest, restsWithATiltOfTenDegreesAtMost) {
  useFrame(0);
  double widest = 0;
  for (unsigned seed = 0; seed < 100; ++seed) {
    srandom(seed);
    const double tilt = RadiansToDegrees(make(_image)->layer()->rotation());
    EXPECT_LE(std::abs(tilt), 10);
    widest = std::max(widest, std::abs(tilt));
  }
  EXPECT_GT(widest, 5);
}

TEST_F(PMFileTest, takesItsLayerAwayWhenItIsReleased) {
  auto card = make(_image);
  render::Layer& backing = *_view.backing;
  ASSERT_EQ(backing.sublayers().size(), 1U);
  // The turn holds the card, as its delegate, until it has ended.
  const auto layer = card->layer();
  card.reset();
  EXPECT_EQ(backing.sublayers().size(), 1U);
  endTurn(*layer);
  EXPECT_EQ(backing.sublayers().size(), 0U);
}

TEST_F(PMFileTest, doesNothingWhenItsEntranceEnds) {
  const auto card = make(_image);
  const auto before = card->layer()->position();
  endTurn(*card->layer());
  EXPECT_EQ(_view.backing->sublayers().size(), 1U);
  EXPECT_EQ(card->layer()->position(), before);
  EXPECT_EQ(card->layer()->animationKeys().size(), 3U);
}

TEST_F(EntranceTest, movesFromAPlaceToAnotherInASecond) {
  const auto card = make(_small);
  srandom(42);
  const Size size{75, 50};
  const Point from = randomPointForSizeInRect(size, _view.rect);
  const Point to = randomPointForSizeInRect(size, _view.rect);
  const render::AnimationSnapshot movement = animations()[0];
  EXPECT_EQ(movement.key, "FadeIn");
  EXPECT_EQ(movement.keyPath, render::KeyPath::position);
  EXPECT_EQ(movement.duration, 1.0);
  EXPECT_STREQ(movement.timingFunction.description(), "easeOut");
  EXPECT_EQ(std::get<Point>(movement.fromValue), (Point{from.x + 37.5, from.y + 25}));
  EXPECT_EQ(std::get<Point>(movement.toValue), (Point{to.x + 37.5, to.y + 25}));
  EXPECT_EQ(std::get<Point>(movement.toValue), card->layer()->position());
}

TEST_F(EntranceTest, shrinksToItsNaturalSizeAndNeverStartsSmaller) {
  for (int cards = 0; cards < 20; ++cards) {
    const auto card = make(_small);
    const render::AnimationSnapshot scale = animations()[1];
    EXPECT_EQ(scale.key, "TheScale");
    EXPECT_EQ(scale.keyPath, render::KeyPath::scale);
    EXPECT_EQ(scale.duration, 0.7);
    EXPECT_STREQ(scale.timingFunction.description(), "easeIn");
    EXPECT_GE(number(scale.fromValue), 1.1);
    EXPECT_LE(number(scale.fromValue), 1.5);
    EXPECT_EQ(number(scale.toValue), 1);
  }
}

TEST_F(EntranceTest, fadesInFromNothingThoughTheModelIsOpaque) {
  const auto card = make(_small);
  const render::AnimationSnapshot fade = animations()[2];
  EXPECT_EQ(fade.key, "TheOpacity");
  EXPECT_EQ(fade.keyPath, render::KeyPath::opacity);
  EXPECT_EQ(fade.duration, 0.4);
  EXPECT_STREQ(fade.timingFunction.description(), "easeOut");
  EXPECT_EQ(number(fade.fromValue), 0);
  EXPECT_EQ(number(fade.toValue), 1);
  EXPECT_EQ(card->layer()->opacity(), 1);
}

TEST_F(EntranceTest, turnsToTheModelsTiltSoThatNothingJumps) {
  for (int cards = 0; cards < 20; ++cards) {
    const auto card = make(_small);
    const render::AnimationSnapshot turn = animations()[3];
    EXPECT_EQ(turn.key, "TheRotation");
    EXPECT_EQ(turn.keyPath, render::KeyPath::rotation);
    EXPECT_EQ(turn.duration, 1.15);
    EXPECT_STREQ(turn.timingFunction.description(), "easeOut");
    EXPECT_LE(std::abs(RadiansToDegrees(number(turn.fromValue))), 35);
    EXPECT_EQ(number(turn.toValue), card->layer()->rotation());
  }
}

TEST_F(EntranceTest, mayCrossTheScreenOrHardlyMove) {
  double shortest = 1e9;
  double longest = 0;
  for (int cards = 0; cards < 100; ++cards) {
    const auto card = make(_small);
    const render::AnimationSnapshot movement = animations()[0];
    const Point from = std::get<Point>(movement.fromValue);
    const Point to = std::get<Point>(movement.toValue);
    const double way = std::hypot(to.x - from.x, to.y - from.y);
    shortest = std::min(shortest, way);
    longest = std::max(longest, way);
    endTurn(*card->layer());
  }
  EXPECT_LT(shortest, 10);
  EXPECT_GT(longest, 70);
}

TEST_F(EntranceTest, holdsACardThatIsDroppedEarlyUntilItsTurnHasEnded) {
  std::weak_ptr<PMFile> dropped = make(_small);
  ASSERT_FALSE(dropped.expired());
  static_cast<void>(animations());
  _presenter.get().beginAnimations(_view.fakes.clock.mediaTime());
  _view.fakes.scheduler.advanceBy(1.1);
  EXPECT_FALSE(dropped.expired());
  _view.fakes.scheduler.advanceBy(0.1);
  EXPECT_TRUE(dropped.expired());
  EXPECT_TRUE(_view.backing->sublayers().empty());
}

TEST_F(EntranceTest, leavesACardThatIsKeptAtRest) {
  const auto card = make(_small);
  const Point place = card->layer()->position();
  static_cast<void>(animations());
  _presenter.get().beginAnimations(_view.fakes.clock.mediaTime());
  _view.fakes.scheduler.advanceBy(60);
  EXPECT_TRUE(card->layer()->animationKeys().empty());
  EXPECT_EQ(card->layer()->position(), place);
  EXPECT_EQ(_view.backing->sublayers().size(), 1U);
}

TEST_F(PMFileTest, drawsTheColoursOfTheFilesTags) {
  useFrame(1);
  _view.fakes.workspace.tags[_url] = {"Nature"};
  _view.labels["Nature"] = {1, 0, 0, 1};
  const auto card = make(_image);
  const QImage& artwork = card->layer()->contents();
  int red = 0;
  for (int y = 530; y < artwork.height(); ++y) {
    for (int x = 0; x < artwork.width(); ++x) {
      if (artwork.pixel(x, y) == qRgb(255, 0, 0)) ++red;
    }
  }
  EXPECT_GT(red, 200);
}

TEST_F(PMFileTest, isBuiltWithoutAView) {
  const auto card = PMFile::make(_url, _image, nullptr);
  EXPECT_TRUE(card->image().isNull());
  EXPECT_EQ(card->layer()->superlayer(), nullptr);
  EXPECT_EQ(card->layer()->bounds(), (Rect{{0, 0}, {750, 500}}));
  EXPECT_DOUBLE_EQ(card->layer()->shadowRadius(), 0);
  endTurn(*card->layer());
}

TEST_F(PMFileTest, isBuiltFromNothing) {
  const auto card = PMFile::make(FilePath(), {}, nullptr);
  EXPECT_TRUE(card->url().empty());
  ASSERT_NE(card->layer(), nullptr);
  endTurn(*card->layer());
}

}  // namespace pelmora::cards
