#include "host/tests/CommandRun.h"

#include <sys/stat.h>

#include <fstream>
#include <iterator>

namespace pelmora::host {

class RegisterCommand : public CommandFixture {
 protected:
  RegisterCommand() { file = home.path() / ".xscreensaver"; }

  static std::string textOf(const FilePath& path) {
    std::ifstream stream(path.bytes());
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  static bool has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
  }

  FilePath file{};
};

TEST_F(RegisterCommand, explainsItself) {
  EXPECT_TRUE(has(run({"register", "--help"}).out, "--select"));
  EXPECT_FALSE(has(run({"unregister", "--help"}).out, "--select"));
  EXPECT_EQ(run({"register", "word"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"unregister", "--select"}).status, ExitStatus::badUsage);
  EXPECT_EQ(run({"register", "--file"}).status, ExitStatus::badUsage);
}

TEST_F(RegisterCommand, takesAnEntryThatIsThere) {
  home.write(".xscreensaver", "mode: random\nprograms: maze\\n - pelmora -root\\n\n");
  Outcome outcome = run({"register"});
  EXPECT_EQ(outcome.status, ExitStatus::success);
  EXPECT_EQ(outcome.out, "Switched it on in " + file.bytes() + ".\n");
  EXPECT_EQ(textOf(file), "mode: random\nprograms: maze\\n   pelmora -root\\n\n");
  outcome = run({"register", "--select"});
  EXPECT_EQ(textOf(file), "mode: one\nprograms: maze\\n   pelmora -root\\n\nselected:\t\t1\n");
  EXPECT_EQ(outcome.out,
            "It is in " + file.bytes() + " already. It is the one that is shown from now on.\n");
  outcome = run({"register", "--select"});
  EXPECT_TRUE(has(outcome.out, "shown already"));
}

TEST_F(RegisterCommand, takesTheSaverOutAgain) {
  const std::string others = "programs: maze\\n\\\n";
  const FilePath given =
      home.write("other", others + "pelmora\\n\\\n/opt/pelmora --root \\n\\\n\n");
  EXPECT_EQ(run({"unregister", "--file", given.bytes()}).status, ExitStatus::success);
  EXPECT_EQ(textOf(given), others + "\n");
  EXPECT_EQ(run({"unregister", "--file", given.bytes()}).out,
            "It is not in " + given.bytes() + ".\n");
  EXPECT_EQ(run({"unregister"}).status, ExitStatus::success);
  EXPECT_FALSE(std::ifstream(file.bytes()).is_open());
}

TEST_F(RegisterCommand, keepsTheModeAndTheLink) {
  const FilePath real = home.write("dotfiles/saver", "programs: -pelmora\n");
  ASSERT_EQ(::chmod(real.c_str(), 0664), 0);
  home.link(".xscreensaver", real);
  EXPECT_EQ(run({"register"}).status, ExitStatus::success);
  EXPECT_EQ(textOf(real), "programs:  pelmora\n");
  struct stat facts {};
  ASSERT_EQ(::lstat(file.c_str(), &facts), 0);
  EXPECT_TRUE(S_ISLNK(facts.st_mode));
  ASSERT_EQ(::stat(file.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 07777, 0664U);
}

TEST_F(RegisterCommand, leavesAFileAloneThatItCannotRead) {
  home.write(".xscreensaver", "programs: -pelmora\njunk\n");
  const Outcome outcome = run({"register", "--select"});
  EXPECT_EQ(outcome.status, ExitStatus::failure);
  EXPECT_EQ(outcome.error, "pelmora register: " + file.bytes() +
                               " is left as it is: line 2 is neither 'name: value' nor a "
                               "comment\n");
  EXPECT_EQ(textOf(file), "programs: -pelmora\njunk\n");
  EXPECT_EQ(run({"unregister"}).status, ExitStatus::failure);
  EXPECT_EQ(run({"register", "--file", home.path().bytes()}).status, ExitStatus::failure);
  const FilePath broken = home.link("broken", "nowhere");
  EXPECT_EQ(run({"register", "--file", broken.bytes()}).status, ExitStatus::failure);
}

TEST_F(RegisterCommand, leavesAChoiceAloneThatItWouldChange) {
  const std::string text = "mode: one\nselected: 5\n";
  home.write(".xscreensaver", text);
  EXPECT_EQ(run({"register"}).status, ExitStatus::failure);
  EXPECT_EQ(textOf(file), text);
}

TEST_F(RegisterCommand, saysThatThereIsNoHome) {
  unsetenv("HOME");
  EXPECT_TRUE(has(run({"register"}).error, "HOME"));
}

}  // namespace pelmora::host
