#include "platform/players/TrackText.h"

#include <gtest/gtest.h>

namespace pelmora::platform::players {

TEST(TrackText, leavesWhatCanBeShown) {
  EXPECT_EQ(trackText("Für Elise"), "Für Elise");
  EXPECT_EQ(trackText("東京 🎵 \u200B."), "東京 🎵 \u200B.");
  EXPECT_EQ(trackText(""), "");
}

TEST(TrackText, hasNoControlsAndNoMarksOfDirection) {
  EXPECT_EQ(trackText("a\x01\n\t\x7F\u0085\u009F"
                      "b"),
            "ab");
  EXPECT_EQ(trackText("a\u200E\u200F\u202A\u202B\u202C\u202D\u202E\u2066\u2067\u2068\u2069\u061C"
                      "b"),
            "ab");
  EXPECT_EQ(trackText("a\u2028\u2029b"), "ab");
}

TEST(TrackText, dropsBytesThatAreNoText) {
  EXPECT_EQ(trackText("a\xFF\xC0\x80"
                      "b\xE2\x82"),
            "ab");
  EXPECT_EQ(trackText(std::string_view("a\0b", 3)), "ab");
}

TEST(TrackText, hasNoBlanksAtItsEnds) {
  EXPECT_EQ(trackText("  a b \n "), "a b");
  EXPECT_EQ(trackText(" \n\u202E "), "");
}

TEST(TrackText, endsAfterItsMostCharacters) {
  std::string many;
  for (int i = 0; i < 600; ++i) many += "é";
  EXPECT_EQ(trackText(many).size(), 2 * kLongestTrackText);
  EXPECT_EQ(trackText(std::string(3'000'000, 'x')).size(), kLongestTrackText);
}

}  // namespace pelmora::platform::players
