#include "filtereditor/GlyphButton.h"

#include <gtest/gtest.h>
#include <QImage>

#include <vector>

namespace pelmora::filtereditor {
namespace {

QImage pictureOf(QWidget& widget) { return widget.grab().toImage(); }

TEST(GlyphButton, saysWhatItIsToThoseWhoCannotSeeIt) {
  const GlyphButton button(GlyphButton::Glyph::plus, "Add row");
  EXPECT_EQ(button.accessibleName(), "Add row");
  EXPECT_EQ(button.toolTip(), "Add row");
  EXPECT_NE(button.focusPolicy() & Qt::TabFocus, 0);
}

TEST(GlyphButton, isDrawnInTheColoursOfThePalette) {
  GlyphButton button(GlyphButton::Glyph::minus, "Remove");
  QPalette palette;
  palette.setColor(QPalette::Window, Qt::black);
  palette.setColor(QPalette::ButtonText, Qt::green);
  button.setPalette(palette);
  button.resize(button.sizeHint());
  const QImage picture = pictureOf(button);
  EXPECT_EQ(picture.pixelColor(picture.rect().center()), QColor(Qt::green));
}

TEST(GlyphButton, isGrayWhereItCannotBePressed) {
  GlyphButton button(GlyphButton::Glyph::plus, "Add row");
  button.resize(button.sizeHint());
  const QImage enabled = pictureOf(button);
  button.setEnabled(false);
  EXPECT_NE(pictureOf(button), enabled);
}

TEST(GlyphButton, hasASignOfItsOwnForEachDeed) {
  std::vector<QImage> pictures;
  for (const auto glyph :
       {GlyphButton::Glyph::plus, GlyphButton::Glyph::minus, GlyphButton::Glyph::group}) {
    GlyphButton button(glyph, "");
    button.resize(button.sizeHint());
    pictures.push_back(pictureOf(button));
  }
  EXPECT_NE(pictures[0], pictures[1]);
  EXPECT_NE(pictures[0], pictures[2]);
  EXPECT_NE(pictures[1], pictures[2]);
}

}  // namespace
}  // namespace pelmora::filtereditor
