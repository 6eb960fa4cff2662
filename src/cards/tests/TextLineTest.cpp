#include "cards/TextLine.h"

#include "cards/CaptionFonts.h"

#include <gtest/gtest.h>
#include <QImage>
#include <QPainter>

#include <cmath>

namespace pelmora::cards {

namespace {

const CardFont kSans{{"DejaVu Sans", "Noto Color Emoji"}, 1, 0, 0};

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

QImage drawn(const TextLine& line, double fontSize, double scale) {
  QImage image(static_cast<int>(400 * scale), static_cast<int>(80 * scale),
               QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::TextAntialiasing);
  painter.scale(scale, scale);
  line.draw(painter, QPointF(20, 10), fontSize, Qt::black);
  return image;
}

}  // namespace

TEST(TextLine, growsInProportionToItsFontSize) {
  const TextLine line("Holiday at the lake.jpg", kSans);
  const Size ten = line.sizeAt(10);
  const Size thirty = line.sizeAt(30);
  EXPECT_GT(ten.width, 60);
  EXPECT_NEAR(thirty.width, 3 * ten.width, 1e-9);
  EXPECT_NEAR(thirty.height, 3 * ten.height, 1e-9);
}

TEST(TextLine, isAsWideAsItsLetters) {
  const double one = TextLine("n", kSans).sizeAt(20).width;
  EXPECT_NEAR(TextLine("nnnnn", kSans).sizeAt(20).width, 5 * one, 0.01);
}

TEST(TextLine, ofNoTextHasTheHeightOfALineAndNoWidth) {
  const TextLine line("", kSans);
  EXPECT_EQ(line.sizeAt(20).width, 0);
  EXPECT_GT(line.sizeAt(20).height, 10);
}

TEST(TextLine, takesTheFactorAndTheLineOfItsFont) {
  const CardFont tall{kSans.families, 2, 1, 0.5};
  EXPECT_NEAR(TextLine("abc", tall).sizeAt(10).width, TextLine("abc", kSans).sizeAt(20).width,
              1e-9);
  EXPECT_NEAR(TextLine("abc", tall).sizeAt(10).height, 10 * 2 * 1.5, 1e-9);
}

TEST(TextLine, drawsWithinTheBoxThatItMeasures) {
  const TextLine line("Agpqy", kSans);
  const Size size = line.sizeAt(40);
  const QRect ink = inkOf(drawn(line, 40, 1));
  ASSERT_FALSE(ink.isEmpty());
  EXPECT_GE(ink.left(), 19);
  EXPECT_LE(ink.right(), 21 + size.width);
  EXPECT_GE(ink.top(), 9);
  EXPECT_LE(ink.bottom(), 11 + size.height);
  EXPECT_GT(ink.width(), 0.8 * size.width);
}

TEST(TextLine, looksTheSameAtEveryScale) {
  const TextLine line("Same at 1 and 2", kSans);
  const QRect once = inkOf(drawn(line, 21.6, 1));
  const QRect twice = inkOf(drawn(line, 21.6, 2));
  EXPECT_NEAR(twice.left() / 2.0, once.left(), 1);
  EXPECT_NEAR(twice.width() / 2.0, once.width(), 1.5);
  EXPECT_NEAR(twice.top() / 2.0, once.top(), 1);
  EXPECT_NEAR(twice.height() / 2.0, once.height(), 1.5);
}

TEST(TextLine, beginsAtTheLeftWhateverTheScript) {
  for (const char* text : {"latin", "שלום", "صورة"}) {
    const TextLine line(QString::fromUtf8(text), kSans);
    const QRect ink = inkOf(drawn(line, 30, 1));
    ASSERT_FALSE(ink.isEmpty()) << text;
    EXPECT_GE(ink.left(), 17) << text;
    EXPECT_LE(ink.right(), 23 + line.sizeAt(30).width) << text;
  }
}

TEST(TextLine, drawsNothingAtSizeZero) {
  EXPECT_TRUE(inkOf(drawn(TextLine("abc", kSans), 0, 1)).isEmpty());
}

TEST(TextLine, putsNamesOfAnyBytesOnOneLine) {
  EXPECT_EQ(singleLine("caf\xc3\xa9.jpg"), QString::fromUtf8("café.jpg"));
  EXPECT_EQ(singleLine("caf\xe9.jpg"), QString::fromUtf8("caf\xef\xbf\xbd.jpg"));
  EXPECT_EQ(singleLine("a\nb\tc\rd\x1b[31m\x7f"), "a b c d [31m ");
  EXPECT_EQ(singleLine("a\xe2\x80\xa8"
                       "b\xe2\x80\xa9"
                       "c\xc2\x85"
                       "d"),
            "a b c d");
}

}  // namespace pelmora::cards
