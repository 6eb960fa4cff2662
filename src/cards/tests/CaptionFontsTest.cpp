#include "cards/CaptionFonts.h"

#include <gtest/gtest.h>
#include <QFontDatabase>

#include <set>

namespace pelmora::cards {

TEST(CaptionFonts, takesTheSixHandsInTheirOrderWhereTheyAreInstalled) {
  const QStringList six{"Noteworthy", "Chalkboard",  "Marker Felt Thin",
                        "Mistral",    "SignPainter", "Tekton Pro"};
  QStringList installed{"DejaVu Sans", "Caveat", "Purisa"};
  installed += six;
  EXPECT_EQ(chooseHands(installed), six);
}

TEST(CaptionFonts, replacesEachMissingHandInItsOwnPlace) {
  const QStringList installed{"Noteworthy",   "Mistral",      "Kalam",      "Permanent Marker",
                              "Indie Flower", "Patrick Hand", "DejaVu Sans"};
  EXPECT_EQ(chooseHands(installed), (QStringList{"Noteworthy", "Kalam", "Permanent Marker",
                                                 "Mistral", "Indie Flower", "Patrick Hand"}));
}

TEST(CaptionFonts, differFromEachOtherWithTheHandsOfADebianSystem) {
  const QStringList chosen = chooseHands(
      {"DejaVu Sans", "Delphine", "DkgHandwriting", "Kaushan Script", "Kristi", "Purisa", "Steve"});
  ASSERT_EQ(chosen.size(), 6);
  EXPECT_EQ((std::set<QString>(chosen.begin(), chosen.end()).size()), 6U);
  EXPECT_FALSE(chosen.contains(""));
}

TEST(CaptionFonts, useASpareHandBeforeTheyShareOne) {
  const QStringList chosen = chooseHands({"Caveat", "DkgHandwriting"});
  EXPECT_EQ(chosen[0], "Caveat");
  EXPECT_EQ(chosen[1], "DkgHandwriting");
  EXPECT_EQ(chosen[2], "Caveat");
}

TEST(CaptionFonts, shareTheOnlyHandThereIs) {
  EXPECT_EQ(chooseHands({"Purisa", "DejaVu Sans"}),
            (QStringList{"Purisa", "Purisa", "Purisa", "Purisa", "Purisa", "Purisa"}));
}

TEST(CaptionFonts, areTheUsersFontWhereThereIsNoHand) {
  EXPECT_EQ(chooseHands({"DejaVu Sans"}), (QStringList{"", "", "", "", "", ""}));
}

TEST(CaptionFonts, areSixWhateverIsInstalled) { EXPECT_EQ(captionFonts().size(), 6U); }

TEST(CaptionFonts, areMadeOnce) { EXPECT_EQ(&captionFonts(), &captionFonts()); }

TEST(CaptionFonts, endInEmojiAndAWideSans) {
  for (const CardFont& font : captionFonts()) {
    EXPECT_FALSE(font.families.front().isEmpty());
    EXPECT_TRUE(font.families.contains("Noto Color Emoji"));
    EXPECT_TRUE(font.families.contains("DejaVu Sans"));
  }
}

TEST(CaptionFonts, keepTheSizeOfAStandInWithinBounds) {
  for (const CardFont& font : captionFonts()) {
    EXPECT_GE(font.sizeFactor, 0.4);
    EXPECT_LE(font.sizeFactor, 1.4);
    EXPECT_LE((font.ascent + font.descent) * font.sizeFactor, 1.5 + 1e-9);
  }
}

TEST(CaptionFonts, beginTheTagsChainWithAFamilyThatIsInstalled) {
  // Else the emoji, second in the chain, would take the digits.
  EXPECT_TRUE(QFontDatabase::hasFamily(tagFont().families.front()))
      << tagFont().families.front().toStdString();
  EXPECT_EQ(tagFont().sizeFactor, 1);
}

}  // namespace pelmora::cards
