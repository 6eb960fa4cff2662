#include "host/tests/CommandRun.h"

namespace pelmora::host {

class DefaultsCommand : public CommandFixture {};

TEST_F(DefaultsCommand, readsTheDefaultOfWhatWasNeverWritten) {
  EXPECT_EQ(run({"defaults", "read", "Delay"}).out, "4\n");
  EXPECT_NE(run({"defaults", "read"}).out.find("NumImages = 5\n"), std::string::npos);
}

TEST_F(DefaultsCommand, keepsWhatIsWrittenUntilItIsDeleted) {
  EXPECT_EQ(run({"defaults", "write", "Delay", "2.5"}).status, ExitStatus::success);
  EXPECT_EQ(run({"defaults", "read", "Delay"}).out, "2.5\n");
  EXPECT_EQ(run({"defaults", "delete", "Delay"}).status, ExitStatus::success);
  EXPECT_EQ(run({"defaults", "read", "Delay"}).out, "4\n");
  const Outcome again = run({"defaults", "delete", "Delay"});
  EXPECT_EQ(again.status, ExitStatus::failure);
  EXPECT_EQ(again.error, "pelmora defaults: the preference 'Delay' is not set\n");
}

TEST_F(DefaultsCommand, refusesValuesThatMakeNoSenseAndKeepsTheOld) {
  run({"defaults", "write", "NumImages", "7"});
  EXPECT_EQ(run({"defaults", "write", "NumImages", "-1"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"defaults", "read", "NumImages"}).out, "7\n");
}

TEST_F(DefaultsCommand, notesWhatTheSaverMakesOfAFilterButKeepsIt) {
  const Outcome written = run({"defaults", "write", "FilterPredicate", "kMDItemStarRating > 3"});
  EXPECT_EQ(written.status, ExitStatus::success);
  EXPECT_NE(written.error.find("pelmora defaults: note: the saver does not use this filter"),
            std::string::npos);
  EXPECT_EQ(run({"defaults", "read", "FilterPredicate"}).out, "\"kMDItemStarRating > 3\"\n");
  EXPECT_EQ(run({"defaults", "write", "FilterPredicate", "kMDItemCity == 'Oslo'"}).error, "");
}

TEST_F(DefaultsCommand, saysWhenThereIsNoSuchPreference) {
  const Outcome unknown = run({"defaults", "read", "Nothing"});
  EXPECT_EQ(unknown.status, ExitStatus::failure);
  EXPECT_EQ(unknown.error, "pelmora defaults: there is no preference 'Nothing'\n");
}

TEST_F(DefaultsCommand, saysWhatItExpects) {
  for (const std::vector<std::string>& words : {std::vector<std::string>{"defaults"},
                                                {"defaults", "write", "Delay"},
                                                {"defaults", "--bogus"},
                                                {"defaults", "dance"}}) {
    EXPECT_EQ(run(words).status, ExitStatus::badUsage);
  }
}

}  // namespace pelmora::host
