#include "host/tests/CommandRun.h"

#include <sys/stat.h>

namespace pelmora::host {

class MatchCommandTest : public CommandFixture {
 protected:
  Outcome match(const std::string& predicate) {
    return run({"match", predicate, (home.path() / "p").bytes()});
  }
};

TEST_F(MatchCommandTest, listsPathsALineEach) {
  home.write("p/b.jpg");
  home.write("p/a.jpg");
  home.write("p/c.png");
  const std::string folder = (home.path() / "p").bytes();
  const Outcome listed = match("kMDItemFSName LIKE '*.jpg' AND kMDItemFSName != ''");
  EXPECT_EQ(listed.status, ExitStatus::success);
  EXPECT_EQ(listed.out, folder + "/a.jpg\n" + folder + "/b.jpg\n");
  EXPECT_EQ(run({"match", "kMDItemFSName == 'x'", folder}).status, ExitStatus::success);
}

TEST_F(MatchCommandTest, endsPathsWithNulWhereAsked) {
  home.write("p/a\nb.jpg");
  const std::string path = (home.path() / "p").bytes();
  const Outcome listed = run({"match", "-0", "kMDItemFSName ENDSWITH 'b.jpg'", path});
  EXPECT_EQ(listed.out, path + "/a\nb.jpg" + '\0');
  EXPECT_EQ(listed.error, "");
}

TEST_F(MatchCommandTest, keepsWhatItReadForTheSaver) {
  home.write("p/a.jpg");
  match("kMDItemFSName == 'a.jpg'");
  struct stat file {};
  ASSERT_EQ(stat((home.path() / ".cache/Pelmora/Metadata.sqlite").c_str(), &file), 0);
  EXPECT_EQ(file.st_mode & 0777, 0600U);
}

TEST_F(MatchCommandTest, refusesAPredicateWithThePlaceThatIsWrong) {
  const Outcome refused = match("kMDItemFSName contains[cd]");
  EXPECT_EQ(refused.status, ExitStatus::badUsage);
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(refused.error,
            "pelmora match: the predicate: expected a value after 'contains[cd]' at character 27\n"
            "See 'pelmora match --help' for what it understands.\n");
}

TEST_F(MatchCommandTest, saysWhatItExpects) {
  EXPECT_EQ(run({"match"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"match", "TRUEPREDICATE"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"match", "TRUEPREDICATE", ""}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"match", "--bogus", "TRUEPREDICATE", "."}).status, ExitStatus::badUsage);
  const std::string help = run({"match", "--help"}).out;
  EXPECT_NE(help.find("  -0  "), std::string::npos) << help;
}

TEST_F(MatchCommandTest, failsForAFolderThatIsNotThere) {
  const Outcome listed = match("kMDItemFSName == 'a'");
  EXPECT_EQ(listed.status, ExitStatus::failure);
  EXPECT_NE(listed.error.find("/p: there is no such folder\n"), std::string::npos);
}

TEST_F(MatchCommandTest, notesWhatTheSaverWouldTakeOtherwise) {
  home.write("p/a.jpg");
  const Outcome listed = match("NOT kMDItemFSName == 'b.jpg'");
  EXPECT_NE(listed.error.find("pelmora match: note: the saver looks through a NOT"),
            std::string::npos);
  EXPECT_EQ(listed.out, (home.path() / "p/a.jpg").bytes() + "\n");
}

}  // namespace pelmora::host
