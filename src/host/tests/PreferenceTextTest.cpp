#include "host/PreferenceText.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pelmora::host {

TEST(PreferenceText, givesKnownKeysTheirType) {
  EXPECT_EQ(*parsePreference("UsePolaroid", "1"), plist::Value(1));
  EXPECT_EQ(*parsePreference("UsePolaroid", "off"), plist::Value(0));
  EXPECT_EQ(*parsePreference("Delay", "2"), plist::Value(2.0));
  EXPECT_EQ(*parsePreference("NumImages", "7"), plist::Value(7));
  EXPECT_EQ(*parsePreference("iTunesTrackType", "2"), plist::Value(2));
}

TEST(PreferenceText, refusesValuesThatMakeNoSense) {
  EXPECT_FALSE(parsePreference("UsePolaroid", "2"));
  EXPECT_FALSE(parsePreference("Delay", "0.4"));
  EXPECT_FALSE(parsePreference("Delay", "soon"));
  EXPECT_FALSE(parsePreference("NumImages", "0"));
  EXPECT_FALSE(parsePreference("Sources", "[]"));
  EXPECT_EQ(parsePreference("Delay", "soon").error().message, "Delay: 'soon' is not a number");
}

TEST(PreferenceText, guessesTheTypeOfUnknownKeys) {
  EXPECT_EQ(*parsePreference("Other", "true"), plist::Value(true));
  EXPECT_EQ(*parsePreference("Other", "12"), plist::Value(12));
  EXPECT_EQ(*parsePreference("Other", "1.5"), plist::Value(1.5));
  EXPECT_EQ(*parsePreference("Other", "twelve"), plist::Value("twelve"));
}

TEST(PreferenceText, writesValuesInOneLine) {
  EXPECT_EQ(textOfPreference(plist::Value(4.0)), "4");
  EXPECT_EQ(textOfPreference(plist::Value(true)), "true");
  EXPECT_EQ(textOfPreference(
                plist::Dictionary{{"a \"b\"\n", plist::Array{1, "x"}}, {"d", plist::Bytes(3)}}),
            R"({"a \"b\"\u000a": [1, "x"], "d": "<3 bytes>"})");
}

TEST(PreferenceText, archivesAFilterAndReadsItAsItsText) {
  const auto archive = parsePreference("FilterPredicate", "kMDItemFSName contains[cd] \"beach\"");
  ASSERT_TRUE(archive);
  ASSERT_TRUE(archive->get<plist::Bytes>());
  EXPECT_EQ(textOfPreference("FilterPredicate", *archive),
            R"("kMDItemFSName CONTAINS[cd] \"beach\"")");
  EXPECT_EQ(textOfPreference("FilterPredicate", plist::Bytes(3)), R"("<3 bytes>")");
}

TEST(PreferenceText, pointsAtTheErrorInAFilter) {
  const auto archive = parsePreference("FilterPredicate", "kMDItemFSName contains[cd]");
  ASSERT_FALSE(archive);
  EXPECT_EQ(archive.error().message,
            "FilterPredicate: expected a value after 'contains[cd]' at character 27");
}

TEST(PreferenceText, listsKnownKeysAndWhatElseIsStored) {
  const auto keys = preferenceKeys({{"Delay", 3.0}, {"Zebra", 1}});
  EXPECT_EQ(std::count(keys.begin(), keys.end(), "Delay"), 1);
  EXPECT_EQ(keys.back(), "Zebra");
  for (const char* key : {"Delay", "NumImages", "ShowiTunesTrack", "Sources", "UsePolaroid"}) {
    EXPECT_NE(describePreferences().find(key), std::string::npos) << key;
  }
}

}  // namespace pelmora::host
