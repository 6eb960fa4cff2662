#include "host/Command.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pelmora::host {

namespace {

struct Outcome {
  ExitStatus status;
  std::string out;
  std::string error;
};

Outcome run(std::vector<std::string> words) {
  words.insert(words.begin(), "pelmora");
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const ExitStatus status = runProgram(pointers);
  return {status, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
}

}  // namespace

TEST(Command, listsItsCommandsInTheHelp) {
  const Outcome help = run({"--help"});
  EXPECT_EQ(help.status, ExitStatus::success);
  for (const char* name : {"window", "render", "defaults", "sources"}) {
    EXPECT_NE(help.out.find(std::string("\n  ") + name + " "), std::string::npos) << name;
  }
}

TEST(Command, everyCommandHasHelp) {
  for (const char* name : {"window", "render", "defaults", "sources"}) {
    const Outcome help = run({name, "--help"});
    EXPECT_EQ(help.status, ExitStatus::success) << name;
    EXPECT_EQ(help.out.find(std::string("usage: pelmora ") + name), 0U) << name;
  }
}

TEST(Command, saysWhatIsWrongAndWhereTheHelpIs) {
  const Outcome unknown = run({"dance"});
  EXPECT_EQ(unknown.status, ExitStatus::badUsage);
  EXPECT_EQ(
      unknown.error,
      "pelmora: there is no command 'dance'\nSee 'pelmora --help' for what it understands.\n");
  const Outcome render = run({"render", "--bogus"});
  EXPECT_EQ(render.status, ExitStatus::badUsage);
  EXPECT_EQ(render.error.find("pelmora render: the option '--bogus' is not known\n"), 0U);
}

TEST(Command, refusesOptionsThatTheSaverDoesNotKnow) {
  EXPECT_EQ(run({"--bogus"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"--renderer", "magic"}).status, ExitStatus::badUsage);
}

TEST(Command, tellsItsVersion) { EXPECT_EQ(run({"--version"}).out.find("pelmora "), 0U); }

}  // namespace pelmora::host
