#include "host/tests/CommandRun.h"

#include <gmock/gmock.h>

namespace pelmora::host {

using SettingsCommandTest = CommandFixture;

TEST_F(SettingsCommandTest, explainsItself) {
  const Outcome outcome = run({"settings", "--help"});
  EXPECT_EQ(outcome.status, ExitStatus::success);
  EXPECT_THAT(outcome.out, testing::StartsWith("usage: pelmora settings"));
  EXPECT_THAT(run({"--help"}).out, testing::HasSubstr("settings"));
}

TEST_F(SettingsCommandTest, refusesWhatItDoesNotUnderstand) {
  EXPECT_EQ(run({"settings", "--bogus"}).status, ExitStatus::badUsage);
  const Outcome outcome = run({"settings", "word"});
  EXPECT_EQ(outcome.status, ExitStatus::badUsage);
  EXPECT_THAT(outcome.error, testing::HasSubstr("'word'"));
}

}  // namespace pelmora::host
