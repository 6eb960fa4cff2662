#include "platform/players/TrackScript.h"

#include "platform/FileContents.h"

#include <gtest/gtest.h>

namespace pelmora::platform::players {

namespace {

constexpr const char* kAll =
    "# What is played.\r\n"
    "\n"
    "tell com.apple.Music\n"
    "  pnam = xesam:title\n"
    "  pArt=xesam:artist\n"
    "\tpAlb = xesam:album\t\n"
    "  pRte = xesam:userRating";

}  // namespace

TEST(TrackScript, namesAnApplicationAndTheFieldsOfTheRecord) {
  const auto script = parseTrackScript(kAll);
  ASSERT_TRUE(script);
  EXPECT_EQ(script->application, "com.apple.Music");
  EXPECT_EQ(script->fields,
            (std::map<std::string, TrackProperty>{{"pnam", TrackProperty::title},
                                                  {"pArt", TrackProperty::artist},
                                                  {"pAlb", TrackProperty::album},
                                                  {"pRte", TrackProperty::userRating}}));
}

TEST(TrackScript, returnsTheFieldsThatTheTrackHas) {
  const auto script = parseTrackScript(kAll);
  ASSERT_TRUE(script);
  EXPECT_EQ(
      recordOf(*script, {"song", "artist", "album", 40.0}),
      (ScriptRecord{{"pnam", "song"}, {"pArt", "artist"}, {"pAlb", "album"}, {"pRte", 40.0}}));
  EXPECT_EQ(recordOf(*script, {.name = "song"}), (ScriptRecord{{"pnam", "song"}}));
  EXPECT_TRUE(recordOf(*script, {}).empty());
}

TEST(TrackScript, isNoOtherText) {
  EXPECT_FALSE(parseTrackScript(""));
  EXPECT_FALSE(parseTrackScript("tell com.apple.Music\n"));
  EXPECT_FALSE(parseTrackScript("pnam = xesam:title\n"));
  EXPECT_FALSE(parseTrackScript("pnam = xesam:title\ntell com.apple.Music\n"));
  EXPECT_FALSE(parseTrackScript("tell a\ntell b\npnam = xesam:title"));
  EXPECT_FALSE(parseTrackScript("tell a b\npnam = xesam:title"));
  EXPECT_FALSE(parseTrackScript("tell \npnam = xesam:title"));
  EXPECT_FALSE(parseTrackScript("tell a\nname = xesam:title\nnonsense"));
}

TEST(TrackScript, hasKeywordsOfFourLettersAndKnownPropertiesOnceEach) {
  EXPECT_TRUE(parseTrackScript("tell a\npnam = xesam:title"));
  EXPECT_FALSE(parseTrackScript("tell a\npname = xesam:title"));
  EXPECT_FALSE(parseTrackScript("tell a\np,am = xesam:title"));
  EXPECT_FALSE(parseTrackScript("tell a\n = xesam:title"));
  EXPECT_FALSE(parseTrackScript("tell a\npnam = xesam:url"));
  EXPECT_FALSE(parseTrackScript("tell a\npnam = "));
  EXPECT_FALSE(parseTrackScript("tell a\npnam = xesam:title\npnam = xesam:album"));
}

TEST(TrackScript, endsAtItsLimits) {
  const std::string script = "tell a\npnam = xesam:title\n";
  EXPECT_TRUE(parseTrackScript(script + std::string(4000, ' ')));
  EXPECT_FALSE(parseTrackScript(script + std::string(5000, ' ')));
  EXPECT_FALSE(parseTrackScript("tell " + std::string(256, 'a') + "\npnam = xesam:title"));
  EXPECT_FALSE(parseTrackScript(std::string("\0\xFF\n", 3) + script));
}

TEST(TrackScript, readsTheScriptsThatComeWithTheProgram) {
  for (const std::string application : {"Music", "iTunes"}) {
    const FilePath file(PELMORA_DATA "/GetCurrentTrackInfo-" + application + ".txt");
    const auto contents = FileContents::read(file, 65536);
    ASSERT_TRUE(contents.ok());
    const auto script =
        parseTrackScript(std::string(contents->bytes().begin(), contents->bytes().end()));
    ASSERT_TRUE(script);
    EXPECT_EQ(script->application, "com.apple." + application);
    EXPECT_EQ(
        recordOf(*script, {"song", "artist", "album", 40.0}),
        (ScriptRecord{{"pnam", "song"}, {"pArt", "artist"}, {"pAlb", "album"}, {"pRte", 40.0}}));
  }
}

}  // namespace pelmora::platform::players
