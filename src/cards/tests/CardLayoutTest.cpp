#include "cards/CardLayout.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelmora::cards {

namespace {

// A view 1000 points high: the proportions are thousandths.
constexpr double kHeight = 1000;

/// Text that is as wide at a font size as `widthPerPoint` says, and 1.25 times its size high.
MeasureAtFontSize textOf(double widthPerPoint) {
  return [widthPerPoint](double fontSize) {
    return Size{widthPerPoint * fontSize, 1.25 * fontSize};
  };
}

MeasureTag tagsOf(const std::vector<Size>& sizes) {
  return [sizes](std::size_t index) { return sizes[index]; };
}

}  // namespace

TEST(CardLayout, framesThePictureByProportionsOfTheViewsHeight) {
  const CardLayout card = layoutCard({750, 500}, kHeight);
  EXPECT_DOUBLE_EQ(card.border, 30);
  EXPECT_DOUBLE_EQ(card.bottomBand, 110);
  EXPECT_EQ(card.size, (Size{810, 640}));
  EXPECT_EQ(card.picture, (Rect{{30, 110}, {750, 500}}));
  EXPECT_EQ(card.captionBox, (Size{804, 107}));
  EXPECT_DOUBLE_EQ(card.captionFontSize, 40);
  EXPECT_DOUBLE_EQ(card.captionLift, 20);
  EXPECT_DOUBLE_EQ(card.tagFontSize, 20);
}

TEST(CardLayout, ofASquarePictureIs81By89HundredthsOfTheViewsHeight) {
  const CardLayout card = layoutCard({750, 750}, kHeight);
  EXPECT_EQ(card.size, (Size{810, 890}));
}

TEST(CardLayout, centresTheCaptionOnItsBoxMeasuredFromTheLeftEdgeWithoutALift) {
  const CardLayout card = layoutCard({750, 500}, kHeight);
  const CaptionLayout caption = layoutCaption(card, false, textOf(10));
  EXPECT_DOUBLE_EQ(caption.fontSize, 40);
  EXPECT_DOUBLE_EQ(caption.rect.origin.x, 402 - 200);        // W / 2, not the card's middle
  EXPECT_DOUBLE_EQ(caption.rect.origin.y, 53.5 - 50 / 2.5);  // a little above the middle
  EXPECT_EQ(caption.rect.size, (Size{400, 50}));
}

TEST(CardLayout, liftsTheCaptionAboveTags) {
  const CardLayout card = layoutCard({750, 500}, kHeight);
  const CaptionLayout caption = layoutCaption(card, true, textOf(10));
  EXPECT_DOUBLE_EQ(caption.rect.origin.y, 53.5 - 50 / 2.5 + 20);
}

TEST(CardLayout, shrinksALongCaptionByOnePointATry) {
  const CardLayout card = layoutCard({750, 500}, kHeight);
  std::vector<double> tried;
  const CaptionLayout caption = layoutCaption(card, false, [&tried](double fontSize) {
    tried.push_back(fontSize);
    return Size{22 * fontSize, fontSize};
  });
  EXPECT_EQ(tried, (std::vector<double>{40, 39, 38, 37, 36}));
  EXPECT_DOUBLE_EQ(caption.fontSize, 36);
  EXPECT_DOUBLE_EQ(caption.rect.origin.x, 402 - 36 * 11);
  EXPECT_DOUBLE_EQ(caption.rect.size.height, 36);
}

TEST(CardLayout, doesNotTakeACaptionThatTouchesBothEnds) {
  // At 40 points the text is exactly as wide as its box: x is 0, not above it.
  const CardLayout card = layoutCard({750, 500}, kHeight);
  EXPECT_DOUBLE_EQ(layoutCaption(card, false, textOf(804.0 / 40)).fontSize, 39);
}

TEST(CardLayout, drawsACaptionThatNeverFitsFromTheLeftEdgeAtEightPoints) {
  const CardLayout card = layoutCard({750, 500}, kHeight);
  const CaptionLayout caption = layoutCaption(card, false, textOf(1000));
  EXPECT_DOUBLE_EQ(caption.fontSize, 8);
  EXPECT_DOUBLE_EQ(caption.rect.origin.x, 0);
  EXPECT_DOUBLE_EQ(caption.rect.size.width, 8000);  // past the right edge
}

TEST(CardLayout, goesBelowEightPointsWhereTheStepsMissIt) {
  // 0.04 × 1012.5 is 40.5: the steps are 40.5, 39.5, … 8.5, 7.5.
  const CardLayout card = layoutCard({750, 500}, 1012.5);
  EXPECT_DOUBLE_EQ(layoutCaption(card, false, textOf(1000)).fontSize, 7.5);
}

TEST(CardLayout, keepsTheSizeOfACaptionInAViewTooLowToShrinkIt) {
  const CardLayout card = layoutCard({75, 50}, 100);
  const CaptionLayout caption = layoutCaption(card, false, textOf(1000));
  EXPECT_DOUBLE_EQ(caption.fontSize, 4);
  EXPECT_DOUBLE_EQ(caption.rect.origin.x, 0);
}

TEST(CardLayout, endsForSizesThatAreNoNumbers) {
  const double none = std::numeric_limits<double>::quiet_NaN();
  const CardLayout card = layoutCard({none, none}, none);
  EXPECT_FALSE(layoutCaption(card, true, textOf(10)).fontSize > 8);
  EXPECT_LE(layoutTags(card, {}, 3, tagsOf({{1, 1}, {1, 1}, {1, 1}})).size(), 3U);
}

TEST(CardLayout, ofAViewWithoutHeightIsThePictureAlone) {
  const CardLayout card = layoutCard({40, 30}, 0);
  EXPECT_EQ(card.size, (Size{40, 30}));
  const CaptionLayout caption = layoutCaption(card, false, textOf(10));
  EXPECT_DOUBLE_EQ(caption.fontSize, 0);
  EXPECT_EQ(caption.rect.size, (Size{0, 0}));
}

TEST(CardLayout, setsTagsSideBySideCentredUnderTheCaption) {
  const CardLayout card = layoutCard({750, 500}, kHeight);
  const CaptionLayout caption{.fontSize = 40, .rect = {{200, 60}, {400, 50}}};
  const auto tags = layoutTags(card, caption, 2, tagsOf({{50, 24}, {70, 26}}));
  ASSERT_EQ(tags.size(), 2U);
  // total = −8 + 58 + 78 = 128, so the first text begins at 402 − 64; the row is 26 high.
  EXPECT_EQ(tags[0].text, (Rect{{338, 34}, {58, 26}}));
  EXPECT_EQ(tags[0].pill, (Rect{{334, 34}, {58, 26}}));
  EXPECT_EQ(tags[1].text, (Rect{{396, 34}, {78, 26}}));
  EXPECT_EQ(tags[1].pill, (Rect{{392, 34}, {78, 26}}));
}

TEST(CardLayout, leavesNoGapBetweenPills) {
  const CardLayout card = layoutCard({750, 500}, kHeight);
  const auto tags = layoutTags(card, {}, 3, tagsOf({{50.3, 20}, {10.7, 20}, {33.1, 20}}));
  ASSERT_EQ(tags.size(), 3U);
  EXPECT_DOUBLE_EQ(tags[0].pill.maxX(), tags[1].pill.minX());
  EXPECT_DOUBLE_EQ(tags[1].pill.maxX(), tags[2].pill.minX());
}

TEST(CardLayout, readsPillWidthsBackInSinglePrecision) {
  const CardLayout card = layoutCard({750, 500}, kHeight);
  const auto tags = layoutTags(card, {}, 1, tagsOf({{50.1, 20}}));
  ASSERT_EQ(tags.size(), 1U);
  EXPECT_EQ(tags[0].text.size.width, static_cast<double>(58.1F));
  EXPECT_NE(tags[0].text.size.width, 58.1);
}

TEST(CardLayout, dropsTheFirstTagThatDoesNotFitAndAllAfterIt) {
  const CardLayout card = layoutCard({750, 500}, kHeight);  // W is 804
  std::vector<std::size_t> measured;
  const std::vector<Size> sizes{{300, 20}, {300, 20}, {300, 31}, {10, 99}};
  const auto tags = layoutTags(card, {}, 4, [&](std::size_t index) {
    measured.push_back(index);
    return sizes[index];
  });
  ASSERT_EQ(tags.size(), 2U);
  EXPECT_EQ(tags[1].index, 1U);
  EXPECT_EQ(measured, (std::vector<std::size_t>{0, 1, 2}));
  // The dropped tag still counts for the row's height; the one after it does not.
  EXPECT_DOUBLE_EQ(tags[0].pill.size.height, 31);
}

TEST(CardLayout, takesATagThatFillsTheBoxExactly) {
  const CardLayout card = layoutCard({750, 500}, kHeight);
  EXPECT_EQ(layoutTags(card, {}, 1, tagsOf({{804, 20}})).size(), 1U);  // −8 + 804 + 8
  EXPECT_EQ(layoutTags(card, {}, 1, tagsOf({{804.5, 20}})).size(), 0U);
}

TEST(CardLayout, showsNoTagWhenTheFirstIsTooWide) {
  const CardLayout card = layoutCard({750, 500}, kHeight);
  EXPECT_TRUE(layoutTags(card, {}, 2, tagsOf({{9000, 20}, {10, 20}})).empty());
}

TEST(CardLayout, writesWhiteOnDarkPillsAndBlackOnLightOnes) {
  EXPECT_TRUE(wantsWhiteText({1, 0, 0, 1}));   // 0.299
  EXPECT_TRUE(wantsWhiteText({0, 0, 1, 1}));   // 0.144
  EXPECT_TRUE(wantsWhiteText({0, 1, 0, 1}));   // 0.587
  EXPECT_FALSE(wantsWhiteText({1, 1, 0, 1}));  // 0.886
  EXPECT_FALSE(wantsWhiteText({1, 1, 1, 1}));
}

TEST(CardLayout, weighsBlueWith144Thousandths) {
  // 0.587 + 0.144 is 0.731, above 0.73; with the customary 0.114 it would be below.
  EXPECT_FALSE(wantsWhiteText({0, 1, 1, 1}));
}

}  // namespace pelmora::cards
