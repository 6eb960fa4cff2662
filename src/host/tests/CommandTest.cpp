#include "host/tests/CommandRun.h"

namespace pelmora::host {

class CommandTest : public CommandFixture {};

TEST_F(CommandTest, listsItsCommandsInTheHelp) {
  const Outcome help = run({"--help"});
  EXPECT_EQ(help.status, ExitStatus::success);
  for (const char* name : {"window", "render", "check", "defaults", "sources"}) {
    EXPECT_NE(help.out.find(std::string("\n  ") + name + " "), std::string::npos) << name;
  }
}

TEST_F(CommandTest, everyCommandHasHelp) {
  for (const char* name : {"window", "render", "check", "defaults", "sources"}) {
    const Outcome help = run({name, "--help"});
    EXPECT_EQ(help.status, ExitStatus::success) << name;
    EXPECT_EQ(help.out.find(std::string("usage: pelmora ") + name), 0U) << name;
  }
}

TEST_F(CommandTest, saysWhatIsWrongAndWhereTheHelpIs) {
  const Outcome unknown = run({"dance"});
  EXPECT_EQ(unknown.status, ExitStatus::badUsage);
  EXPECT_EQ(
      unknown.error,
      "pelmora: there is no command 'dance'\nSee 'pelmora --help' for what it understands.\n");
  const Outcome render = run({"render", "--bogus"});
  EXPECT_EQ(render.status, ExitStatus::badUsage);
  EXPECT_EQ(render.error.find("pelmora render: the option '--bogus' is not known\n"), 0U);
}

TEST_F(CommandTest, refusesOptionsThatTheSaverDoesNotKnow) {
  EXPECT_EQ(run({"--bogus"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"--renderer", "magic"}).status, ExitStatus::badUsage);
}

TEST_F(CommandTest, tellsItsVersion) { EXPECT_EQ(run({"--version"}).out.find("pelmora "), 0U); }

}  // namespace pelmora::host
