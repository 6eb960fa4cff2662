#include "host/tests/CommandRun.h"

#include <gmock/gmock.h>

namespace pelmora::host {

namespace {

class IdleCommandTest : public CommandFixture {
 protected:
  /// What is said of a wrong command line.
  static std::string problem(std::vector<std::string> words) {
    words.insert(words.begin(), "idle");
    const Outcome outcome = run(std::move(words));
    EXPECT_EQ(outcome.status, ExitStatus::badUsage);
    return outcome.error;
  }
};

}  // namespace

TEST_F(IdleCommandTest, explainsItself) {
  const Outcome outcome = run({"idle", "--help"});
  EXPECT_EQ(outcome.status, ExitStatus::success);
  EXPECT_THAT(outcome.out, testing::StartsWith("usage: pelmora idle"));
  for (const char* option : {"--delay SECONDS", "--not-on-battery", "--verbose", "600"}) {
    EXPECT_THAT(outcome.out, testing::HasSubstr(option));
  }
  EXPECT_THAT(run({"--help"}).out, testing::HasSubstr("\n  idle "));
}

TEST_F(IdleCommandTest, refusesDelaysThatCannotBeMeant) {
  for (const char* delay : {"0", "-5", "32768", "1.5", "ten", "", "99999999999999999999"}) {
    EXPECT_THAT(problem({"--delay", delay}),
                testing::HasSubstr("--delay is a number of seconds from 1 to 32767, not '"));
  }
  EXPECT_THAT(problem({"--delay"}), testing::HasSubstr("needs a value"));
  EXPECT_THAT(problem({"--delay", "--", "5"}), testing::HasSubstr("needs a value"));
}

TEST_F(IdleCommandTest, refusesWhatItDoesNotUnderstand) {
  EXPECT_THAT(problem({"--bogus"}), testing::HasSubstr("'--bogus' is not known"));
  EXPECT_THAT(problem({"window"}), testing::HasSubstr("'window' is one word too many"));
}

TEST_F(IdleCommandTest, refusesWhatTheSaverWouldNotUnderstand) {
  EXPECT_THAT(problem({"--", "--bogus"}), testing::HasSubstr("for the saver: "));
  EXPECT_THAT(problem({"--", "window"}), testing::HasSubstr("for the saver: 'window'"));
  EXPECT_THAT(problem({"--", "--renderer", "magic"}), testing::HasSubstr("for the saver: "));
}

TEST_F(IdleCommandTest, saysThatThereIsNoDisplay) {
  unsetenv("WAYLAND_DISPLAY");
  unsetenv("DISPLAY");
  const Outcome none = run({"idle"});
  EXPECT_EQ(none.status, ExitStatus::failure);
  EXPECT_EQ(none.error, "pelmora idle: there is no display\n");
  setenv("WAYLAND_DISPLAY", "nobody-there", 1);
  EXPECT_THAT(run({"idle"}).error, testing::HasSubstr("the Wayland compositor does not answer"));
  unsetenv("WAYLAND_DISPLAY");
}

}  // namespace pelmora::host
