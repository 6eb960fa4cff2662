#include "cards/CardArtwork.h"

#include "cards/CaptionFonts.h"
#include "cards/tests/PlainPicture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

namespace pelmora::cards {

namespace {

const CardFont kSans{{"DejaVu Sans", "Noto Color Emoji"}, 1, 0, 0};
constexpr Color kRed{1, 0, 0, 1};
constexpr Color kYellow{1, 1, 0, 1};
constexpr QRgb kPaper = qRgb(255, 255, 237);

std::optional<Color> redOrYellow(std::string_view tag) {
  if (tag == "Red") return kRed;
  if (tag == "Yellow") return kYellow;
  return std::nullopt;
}

FramedCard cardOf(const platform::Image& picture, std::string caption = {},
                  std::vector<std::string> tags = {}) {
  return {picture, std::move(caption), kSans, {0, 0, 0.5, 1}, std::move(tags), redOrYellow};
}

/// A picture of 75 by 50 points for a view 100 points high; the card is 81 by 64.
platform::Image grey() { return plainPicture({75, 50}, {75, 50}, {128, 128, 128, 255}); }

int difference(QRgb a, QRgb b) {
  return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                   std::abs(qBlue(a) - qBlue(b)), std::abs(qAlpha(a) - qAlpha(b))});
}

/// How many pixels of `image` within `area` are within 40 of `color`.
int countOf(const QImage& image, QRgb color, const QRect& area) {
  int count = 0;
  const QRect inside = area & image.rect();
  for (int y = inside.top(); y <= inside.bottom(); ++y) {
    for (int x = inside.left(); x <= inside.right(); ++x) {
      if (difference(image.pixel(x, y), color) <= 40) ++count;
    }
  }
  return count;
}

}  // namespace

TEST(CardArtwork, isPaperAroundThePicture) {
  const QImage artwork = paintFramedCard(cardOf(grey()), 100, 1);
  EXPECT_EQ(artwork.size(), QSize(81, 64));
  for (const QPoint& place : {QPoint(0, 0), QPoint(80, 0), QPoint(0, 63), QPoint(80, 63),
                              QPoint(40, 2), QPoint(2, 30), QPoint(78, 30), QPoint(40, 54)}) {
    EXPECT_LE(difference(artwork.pixel(place), kPaper), 1) << place.x() << ", " << place.y();
  }
}

TEST(CardArtwork, tintsThePictureWithThePaper) {
  const QImage artwork = paintFramedCard(cardOf(grey()), 100, 1);
  const QRgb tinted = qRgb(128, 128, 119);  // blue × 0.93
  for (const QPoint& corner :
       {QPoint(3, 3), QPoint(77, 3), QPoint(3, 52), QPoint(77, 52), QPoint(40, 25)}) {
    EXPECT_LE(difference(artwork.pixel(corner), tinted), 1) << corner.x() << ", " << corner.y();
  }
}

TEST(CardArtwork, isDrawnAtTheDisplaysPixels) {
  const QImage artwork = paintFramedCard(cardOf(grey()), 100, 2);
  EXPECT_EQ(artwork.size(), QSize(162, 128));
  EXPECT_LE(difference(artwork.pixel(6, 6), qRgb(128, 128, 119)), 1);
  EXPECT_LE(difference(artwork.pixel(5, 5), kPaper), 1);
}

TEST(CardArtwork, copiesThePicturesPixelsWhereTheyFit) {
  platform::Image picture = grey();
  std::vector<std::uint8_t> bytes(picture.pixels->bytes.begin(), picture.pixels->bytes.end());
  for (std::size_t i = 0; i < bytes.size(); i += 8) bytes[i + 2] = 255;
  picture.pixels = std::make_shared<const platform::Pixels>(
      platform::Pixels{picture.pixels->size, true, std::move(bytes)});
  const QImage artwork = paintFramedCard(cardOf(picture), 100, 1);
  // Every other pixel is red: any resampling would mix them.
  EXPECT_GE(qRed(artwork.pixel(3, 3)), 254);
  EXPECT_LE(std::abs(qRed(artwork.pixel(4, 3)) - 128), 1);
}

TEST(CardArtwork, enlargesASmallPictureToItsPlace) {
  const platform::Image small = plainPicture({75, 50}, {3, 2}, {0, 0, 255, 255});
  const QImage artwork = paintFramedCard(cardOf(small), 100, 1);
  EXPECT_EQ(artwork.size(), QSize(81, 64));
  for (const QPoint& corner : {QPoint(3, 3), QPoint(77, 3), QPoint(3, 52), QPoint(77, 52)}) {
    EXPECT_LE(difference(artwork.pixel(corner), qRgb(255, 0, 0)), 1);
  }
}

TEST(CardArtwork, showsThePaperThroughATransparentPicture) {
  const platform::Image clear = plainPicture({75, 50}, {75, 50}, {0, 0, 0, 0});
  const QImage artwork = paintFramedCard(cardOf(clear), 100, 1);
  EXPECT_LE(difference(artwork.pixel(40, 25), kPaper), 1);
  const platform::Image half = plainPicture({75, 50}, {75, 50}, {0, 0, 128, 128});
  const QImage mixed = paintFramedCard(cardOf(half), 100, 1);
  EXPECT_LE(difference(mixed.pixel(40, 25), qRgb(255, 127, 118)), 2);
}

TEST(CardArtwork, writesTheCaptionInItsColourInTheBand) {
  const platform::Image picture = plainPicture({750, 500}, {75, 50}, {128, 128, 128, 255});
  const QImage artwork = paintFramedCard(cardOf(picture, "Lake.jpg"), 1000, 1);
  const QRect band(0, 532, 810, 108);
  EXPECT_GT(countOf(artwork, qRgb(0, 0, 128), band), 200);
  EXPECT_EQ(countOf(artwork, qRgb(0, 0, 128), QRect(0, 0, 810, 530)), 0);
  // Nearer to the top of the band than to the bottom.
  EXPECT_GT(countOf(artwork, qRgb(0, 0, 128), QRect(0, 532, 810, 64)),
            countOf(artwork, qRgb(0, 0, 128), QRect(0, 596, 810, 44)));
}

TEST(CardArtwork, drawsAPillUnderATagWithAColour) {
  const platform::Image picture = plainPicture({750, 500}, {75, 50}, {128, 128, 128, 255});
  const QImage artwork = paintFramedCard(cardOf(picture, "a", {"Red"}), 1000, 1);
  const QRect band(0, 532, 810, 108);
  EXPECT_GT(countOf(artwork, qRgb(255, 0, 0), band), 300);
  EXPECT_GT(countOf(artwork, qRgb(255, 255, 255), band), 20);  // its text; the paper is yellower
}

TEST(CardArtwork, writesBlackOnALightPill) {
  const platform::Image picture = plainPicture({750, 500}, {75, 50}, {128, 128, 128, 255});
  const QImage artwork = paintFramedCard(cardOf(picture, "", {"Yellow"}), 1000, 1);
  const QRect band(0, 532, 810, 108);
  EXPECT_GT(countOf(artwork, qRgb(255, 255, 0), band), 300);
  EXPECT_GT(countOf(artwork, qRgb(0, 0, 0), band), 20);
}

TEST(CardArtwork, writesATagWithoutAColourOnThePaper) {
  const platform::Image picture = plainPicture({750, 500}, {75, 50}, {128, 128, 128, 255});
  const QImage artwork = paintFramedCard(cardOf(picture, "", {"Plain", "Red"}), 1000, 1);
  const QRect band(0, 532, 810, 108);
  EXPECT_GT(countOf(artwork, qRgb(0, 0, 0), band), 30);
  // The pill of the second tag lies wholly to the right of the card's middle less the first text.
  EXPECT_EQ(countOf(artwork, qRgb(255, 0, 0), QRect(0, 532, 390, 108)), 0);
  EXPECT_GT(countOf(artwork, qRgb(255, 0, 0), QRect(390, 532, 420, 108)), 200);
}

TEST(CardArtwork, holdsThePicturesOwnPixels) {
  const platform::Image picture = grey();
  const QImage image = pictureImage(picture);
  EXPECT_EQ(image.size(), QSize(75, 50));
  EXPECT_EQ(image.constBits(), picture.pixels->bytes.data());
}

TEST(CardArtwork, keepsThePixelsAliveForTheImage) {
  QImage image;
  std::weak_ptr<const platform::Pixels> pixels;
  {
    const platform::Image picture = grey();
    pixels = picture.pixels;
    image = pictureImage(picture);
  }
  EXPECT_FALSE(pixels.expired());
  EXPECT_EQ(image.pixel(10, 10), qRgb(128, 128, 128));
  image = QImage();
  EXPECT_TRUE(pixels.expired());
}

TEST(CardArtwork, ofAPictureThatIsNotValidIsThePaperAlone) {
  EXPECT_TRUE(pictureImage({}).isNull());
  const QImage artwork = paintFramedCard(cardOf({{75, 50}, nullptr}), 100, 1);
  EXPECT_EQ(artwork.size(), QSize(81, 64));
  EXPECT_LE(difference(artwork.pixel(0, 0), kPaper), 1);
}

TEST(CardArtwork, refusesPixelsThatAreFewerThanTheirSizeSays) {
  const auto pixels = std::make_shared<const platform::Pixels>(
      platform::Pixels{{100, 100}, true, std::vector<std::uint8_t>(100)});
  EXPECT_TRUE(pictureImage({{100, 100}, pixels}).isNull());
}

TEST(CardArtwork, isBoundedWhateverSizeIsAsked) {
  const QImage artwork = paintFramedCard(cardOf({{1e9, 10}, nullptr}), 0, 1);
  EXPECT_LE(artwork.width(), 16384);
}

TEST(CardArtwork, takesNamesOfAnyBytes) {
  for (const char* name : {"caf\xe9.jpg", "two\nlines", "\x01\x02", "🎉.png", "富士山.jpg", ""}) {
    EXPECT_FALSE(paintFramedCard(cardOf(grey(), name, {name}), 100, 1).isNull());
  }
}

}  // namespace pelmora::cards
