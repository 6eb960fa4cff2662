#include "render/TextSetting.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

#include <cmath>
#include <limits>

namespace pelmora::render {
namespace {

constexpr double kWide = 10000;
constexpr Color kBlack{0, 0, 0, 1};
const TextFont kSans{"DejaVu Sans", 24, false};

TextBlock block(const std::string& text, TextAlignment alignment = TextAlignment::left) {
  return {
      .string = {{{text, kSans, std::nullopt}}}, .alignment = alignment, .foregroundColor = kBlack};
}

Size sizeOf(const std::string& text) { return TextSetting(block(text), kWide).size(); }

QImage drawn(const TextBlock& text, double width, double scale = 1) {
  QImage image(static_cast<int>(400 * scale), static_cast<int>(120 * scale), QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.scale(scale, scale);
  TextSetting(text, width).draw(painter);
  return image;
}

/// The rectangle of all that is not white, in pixels.
QRect inkOf(const QImage& image) {
  QRect ink;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (image.pixel(x, y) != 0xFFFFFFFFU) ink |= QRect(x, y, 1, 1);
    }
  }
  return ink;
}

int countOf(const QImage& image, const QColor& color) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += image.pixelColor(x, y) == color;
  }
  return count;
}

TEST(TextSetting, isAsWideAsItsWidestLineAndAsHighAsAll) {
  const Size one = sizeOf("a wide line");
  EXPECT_GT(one.width, 100);
  EXPECT_GE(one.height, 24);
  const Size three = sizeOf("a wide line\nnarrow\nn");
  EXPECT_EQ(three.width, one.width);
  EXPECT_EQ(three.height, 3 * one.height);
}

TEST(TextSetting, hasWholePoints) {
  const Size size = sizeOf("iiil.,");
  EXPECT_EQ(size.width, std::round(size.width));
  EXPECT_EQ(size.height, std::round(size.height));
}

TEST(TextSetting, joinsRunsInALine) {
  const Size whole = sizeOf("one and two");
  const Size joined =
      TextSetting({{{{"one a", kSans, kBlack}, {"nd two", kSans, std::nullopt}}}}, kWide).size();
  EXPECT_NEAR(joined.width, whole.width, 2);
  EXPECT_EQ(joined.height, whole.height);
}

TEST(TextSetting, setsBoldAndLargerLettersWider) {
  const double plain = sizeOf("Title").width;
  const TextFont bold{kSans.family, kSans.size, true};
  const TextFont large{kSans.family, 48, false};
  EXPECT_GT(TextSetting({{{{"Title", bold, kBlack}}}}, kWide).size().width, plain);
  EXPECT_NEAR(TextSetting({{{{"Title", large, kBlack}}}}, kWide).size().width, 2 * plain, 2);
}

TEST(TextSetting, takesTheSystemsFontWhereNoneIsNamed) {
  EXPECT_GT(TextSetting({{{{"Title", {"", 24, true}, kBlack}}}}, kWide).size().width, 30);
}

TEST(TextSetting, keepsTheHeightOfAnEmptyLineInBetween) {
  EXPECT_EQ(sizeOf("a\n\nb").height, 3 * sizeOf("a").height);
}

TEST(TextSetting, beginsNoLineAtTheVeryEnd) {
  EXPECT_EQ(sizeOf("a\n"), sizeOf("a"));
  EXPECT_EQ(sizeOf("a\n\n").height, 2 * sizeOf("a").height);
}

TEST(TextSetting, ofNoTextHasNoSize) {
  for (const char* text : {"", "\n", "\n\n\n", "\x01\x02", "\t"}) {
    EXPECT_EQ(sizeOf(text), Size{}) << text;
  }
  EXPECT_EQ(TextSetting({}, kWide).size(), Size{});
}

TEST(TextSetting, showsControlCharactersAsNothing) {
  EXPECT_EQ(sizeOf("a\x01\tb\x1b\x7f\xc2\x85\r"), sizeOf("ab"));
}

TEST(TextSetting, takesAnyBytes) {
  EXPECT_EQ(sizeOf("\xff\xfe\xed\xa0\x80"), sizeOf(std::string("\xef\xbf\xbd\xef\xbf\xbd") +
                                                   "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd"));
  EXPECT_EQ(sizeOf(std::string("a\0b", 3)), sizeOf("ab"));
}

TEST(TextSetting, wrapsAtTheWidthThatItHas) {
  const Size line = sizeOf("several words in a line");
  const Size wrapped = TextSetting(block("several words in a line"), line.width / 2).size();
  EXPECT_LE(wrapped.width, line.width / 2);
  EXPECT_GE(wrapped.height, 2 * line.height);
  const Size within = TextSetting(block("unbreakable_word_of_letters"), 100).size();
  EXPECT_LE(within.width, 100);
  EXPECT_GT(within.height, line.height);
}

TEST(TextSetting, wrapsNothingAtTheWidthThatItMeasured) {
  const char* const texts[] = {
      "i",         "Title",   "jazz fjord", "AVAVA ToTo",
      "a b c d",   "wwwwfff", "Über",       "\xd8\xb5\xd9\x88\xd8\xb1\xd8\xa9",
      "trailing ", "12 + 30"};
  for (const char* text : texts) {
    const Size size = sizeOf(text);
    EXPECT_EQ(TextSetting(block(text), size.width).size(), size) << text;
  }
}

TEST(TextSetting, isBoundedHoweverLongTheText) {
  EXPECT_EQ(sizeOf(std::string(5000, 'n')), sizeOf(std::string(512, 'n')));
  EXPECT_EQ(sizeOf(std::string(5000, '\n') + "x").height, 0);
  std::string lines;
  for (int line = 0; line < 1000; ++line) lines += "n\n";
  EXPECT_EQ(sizeOf(lines).height, 64 * sizeOf("n").height);
  const TextFont huge{kSans.family, 1e9, false};
  const Size size = TextSetting({{{{std::string(512, 'W') + "\n" + lines, huge, kBlack}}}},
                                std::numeric_limits<double>::infinity())
                        .size();
  EXPECT_LE(size.width, 16384);
  EXPECT_EQ(size.height, 16384);
}

TEST(TextSetting, endsALineBetweenCharacters) {
  std::string notes = "n";
  for (int count = 0; count < 400; ++count) notes += "\xf0\x9f\x8e\xb5";
  std::string shown = "n";
  for (int count = 0; count < 255; ++count) shown += "\xf0\x9f\x8e\xb5";
  EXPECT_EQ(sizeOf(notes), sizeOf(shown));
}

TEST(TextSetting, showsNothingInNoWidth) {
  for (const double width : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(TextSetting(block("text"), width).size(), Size{});
    EXPECT_TRUE(inkOf(drawn(block("text"), width)).isEmpty());
  }
}

TEST(TextSetting, drawsWithinWhatItMeasures) {
  const Size size = sizeOf("jazz Agpq\nsecond");
  const QRect ink = inkOf(drawn(block("jazz Agpq\nsecond"), size.width));
  ASSERT_FALSE(ink.isEmpty());
  EXPECT_LE(ink.right(), size.width + 1);
  EXPECT_LE(ink.bottom(), size.height);
  EXPECT_GT(ink.bottom(), size.height / 2);
}

TEST(TextSetting, aligns) {
  // The last two are Hebrew and Arabic: their lines run to the left.
  for (const char* text :
       {"latin", "\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d", "\xd8\xb5\xd9\x88\xd8\xb1\xd8\xa9"}) {
    const double width = sizeOf(text).width;
    const auto left = [&](TextAlignment alignment) {
      return inkOf(drawn(block(text, alignment), 300)).left();
    };
    EXPECT_NEAR(left(TextAlignment::left), 0, 4) << text;
    EXPECT_NEAR(left(TextAlignment::center), (300 - width) / 2, 4) << text;
    EXPECT_NEAR(left(TextAlignment::right), 300 - width, 4) << text;
    const bool runsLeft = text[0] != 'l';
    EXPECT_NEAR(left(TextAlignment::natural), runsLeft ? 300 - width : 0, 4) << text;
  }
}

TEST(TextSetting, givesEachLineItsOwnDirection) {
  const QImage image =
      drawn(block("latin\n\xd7\xa9\xd7\x9c\xd7\x95\xd7\x9d", TextAlignment::natural), 300);
  const int height = static_cast<int>(sizeOf("latin").height);
  EXPECT_LT(inkOf(image.copy(0, 0, 400, height)).left(), 10);
  EXPECT_GT(inkOf(image.copy(0, height, 400, height)).left(), 150);
}

TEST(TextSetting, drawsEachRunInItsOwnColour) {
  const TextBlock text{.string = {{{"MMM", kSans, Color{1, 0, 0, 1}}, {"MMM", kSans, {}}}},
                       .foregroundColor = {0, 0, 1, 1}};
  const QImage image = drawn(text, 300);
  EXPECT_GT(countOf(image, Qt::red), 50);
  EXPECT_GT(countOf(image, Qt::blue), 50);
}

TEST(TextSetting, looksTheSameAtEveryScale) {
  const QRect once = inkOf(drawn(block("Same at 1 and 2"), 300));
  const QRect twice = inkOf(drawn(block("Same at 1 and 2"), 300, 2));
  EXPECT_NEAR(twice.left() / 2.0, once.left(), 1);
  EXPECT_NEAR(twice.width() / 2.0, once.width(), 1.5);
  EXPECT_NEAR(twice.top() / 2.0, once.top(), 1);
  EXPECT_NEAR(twice.height() / 2.0, once.height(), 1.5);
}

TEST(TextSetting, reachesBeyondItsLinesByAPartOfTheFontSize) {
  EXPECT_EQ(overhangOf({}), 0);
  EXPECT_EQ(overhangOf({{{"a", {"", 12, false}, {}}, {"b", {"", 40, false}, {}}}}), 10);
}

}  // namespace
}  // namespace pelmora::render
