#include "host/PreferenceTools.h"

#include "host/tests/CommandRun.h"

namespace pelmora::host {

class PreferenceToolsTest : public CommandFixture {};

TEST_F(PreferenceToolsTest, readWhatTheSaverReads) {
  home.mkdir("Pictures");
  const PreferenceTools tools;
  EXPECT_EQ(tools.preferences.integerForKey("NumImages"), 5);
  ASSERT_EQ(tools.preferences.arrayForKey("Sources")->size(), 1U);
}

TEST_F(PreferenceToolsTest, sayOnStandardErrorThatTheFileIsDamaged) {
  home.mkdir(".config");
  home.mkdir(".config/Pelmora");
  home.write(".config/Pelmora/Preferences.plist", "bplist00 and no more");
  const Outcome read = run({"defaults", "read", "Delay"});
  EXPECT_EQ(read.out, "4\n");
  EXPECT_NE(read.error.find("Preferences.plist"), std::string::npos);
}

}  // namespace pelmora::host
