#include "render/TextLayer.h"

#include "render/tests/Stage.h"

#include <gtest/gtest.h>

#include <limits>
#include <thread>

namespace pelmora::render {
namespace {

AttributedString text(const std::string& utf8) {
  return {{{utf8, {"DejaVu Sans", 24, false}, std::nullopt}}};
}

struct TextLayerTest : testing::Test {
  TextLayerTest() {
    layer->setString(text("Title"));
    layer->setBounds({{0, 0}, boundingSize(layer->string(), kMost)});
    stage.root->addSublayer(layer);
  }
  std::shared_ptr<const BakedPicture> picture() {
    stage.tree.commit();
    return stage.latest().root.sublayers[0].picture;
  }
  /// Pixels of a row through the letters that are neither covered nor free.
  static double partOfEdges(const QImage& image) {
    int edges = 0;
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const int alpha = qAlpha(image.pixel(x, y));
        if (alpha > 0) ++inked;
        if (alpha > 0 && alpha < 255) ++edges;
      }
    }
    return static_cast<double>(edges) / inked;
  }

  static constexpr Size kMost{10000, 10000};
  Stage stage{{400, 100}};
  std::shared_ptr<TextLayer> layer = std::make_shared<TextLayer>();
};

TEST_F(TextLayerTest, startsAsWhiteTextWithoutLetters) {
  const TextLayer fresh;
  EXPECT_EQ(fresh.role(), "text");
  EXPECT_EQ(fresh.string(), AttributedString{});
  EXPECT_EQ(fresh.alignment(), TextAlignment::natural);
  EXPECT_EQ(fresh.foregroundColor(), (Color{1, 1, 1, 1}));
}

TEST_F(TextLayerTest, isPaintedAgainWhenItsLooksChange) {
  auto before = picture();
  ASSERT_TRUE(before);
  const std::function<void()> changes[] = {[&] { layer->setString(text("Other")); },
                                           [&] { layer->setAlignment(TextAlignment::right); },
                                           [&] {
                                             layer->setForegroundColor({0, 0, 1, 1});
                                           }};
  for (const auto& change : changes) {
    change();
    const auto now = picture();
    EXPECT_NE(now, before);
    change();
    before = picture();
    EXPECT_EQ(now, before);
  }
}

TEST_F(TextLayerTest, tellsSnapshotsItsStringWithoutLooks) {
  AttributedString string = text("Title");
  string.runs.push_back({"\nArtist", {}, Color{1, 0, 0, 1}});
  layer->setString(string);
  stage.tree.commit();
  EXPECT_EQ(stage.latest().root.sublayers[0].string, "Title\nArtist");
}

TEST_F(TextLayerTest, isPaintedAtThePixelsOfTheDisplay) {
  const auto once = picture();
  stage.tree.setScale(2);
  const auto twice = picture();
  EXPECT_EQ(twice->bounds.size(), 2 * once->bounds.size());
  // The edges of letters that are drawn twice as large are a smaller part of them; those of
  // letters that were made larger are not.
  EXPECT_LT(partOfEdges(twice->image), 0.75 * partOfEdges(once->image));
}

TEST_F(TextLayerTest, isNotCutWhereLettersReachOutOfTheBounds) {
  layer->setString({{{"j", {"DejaVu Sans", 24, true}, std::nullopt}}});
  layer->setBounds({{0, 0}, boundingSize(layer->string(), kMost)});
  layer->setAlignment(TextAlignment::left);
  const auto baked = picture();
  const QRect left(0, 0, baked->bounds.toRect().left(), baked->image.height());
  int inked = 0;
  for (int y = 0; y < left.height(); ++y) {
    for (int x = 0; x < left.width(); ++x) inked += qAlpha(baked->image.pixel(x, y)) > 0;
  }
  EXPECT_GT(inked, 0);
  EXPECT_EQ(qAlpha(baked->image.pixel(0, baked->image.height() / 2)), 0);
}

TEST_F(TextLayerTest, showsNothingWithoutTextOrArea) {
  layer->setString(text(""));
  EXPECT_FALSE(picture());
  layer->setString(text("Title"));
  layer->setBounds({});
  EXPECT_FALSE(picture());
}

TEST_F(TextLayerTest, showsTextOverItsBackground) {
  layer->setBackgroundColor(Color{0, 0, 1, 1});
  const auto baked = picture();
  const QImage image = baked->image.copy(baked->bounds.toRect());
  EXPECT_EQ(image.pixel(image.width() - 1, 0), 0xFF0000FFU);
  bool showsLetters = false;
  for (int x = 0; x < image.width(); ++x) {
    showsLetters |= image.pixel(x, image.height() / 2) == 0xFFFFFFFFU;
  }
  EXPECT_TRUE(showsLetters);
}

TEST_F(TextLayerTest, mayBePaintedOffTheThreadOfTheWindows) {
  std::thread([&] { picture(); }).join();
  EXPECT_TRUE(picture());
}

TEST_F(TextLayerTest, isBoundedWhateverItsBounds) {
  layer->setBounds({{0, 0}, {1e12, 20}});
  EXPECT_EQ(picture()->bounds.width(), 16000);
}

TEST(BoundingSize, holdsTheTextWithinWhatItMayHave) {
  const Size one = boundingSize(text("some words in a line"), {1e9, 1e9});
  EXPECT_EQ(boundingSize(text("some words in a line"), {one.width, 1e9}), one);
  const Size narrow = boundingSize(text("some words in a line"), {100, 1e9});
  EXPECT_LE(narrow.width, 100);
  EXPECT_GT(narrow.height, one.height);
  EXPECT_EQ(boundingSize(text("some words in a line"), {100, 40}).height, 40);
}

TEST(BoundingSize, isZeroForNoTextAndForNoRoom) {
  EXPECT_EQ(boundingSize({}, {100, 100}), Size{});
  EXPECT_EQ(boundingSize(text(""), {100, 100}), Size{});
  EXPECT_EQ(boundingSize(text("a"), {0, 100}), Size{});
  EXPECT_EQ(boundingSize(text("a"), {-5, -5}), Size{});
  EXPECT_EQ(boundingSize(text("a"), {100, 0}).height, 0);
}

TEST(BoundingSize, isNeverMoreThanALayerMayHave) {
  constexpr double kEndless = std::numeric_limits<double>::infinity();
  const AttributedString large{{{std::string(512, 'W'), {"DejaVu Sans", 200, true}, {}}}};
  const Size size = boundingSize(large, {kEndless, kEndless});
  EXPECT_LE(size.width, 16384);
  EXPECT_GT(size.width, 16000);
  EXPECT_LE(size.height, 16384);
}

}  // namespace
}  // namespace pelmora::render
