#include "host/tests/CommandRun.h"

#include <filesystem>

namespace pelmora::host {

class SourcesCommand : public CommandFixture {
 protected:
  [[nodiscard]] std::string list() { return run({"sources", "list"}).out; }
};

TEST_F(SourcesCommand, addsFoldersWithTheirValues) {
  const FilePath folder = home.mkdir("my pictures");
  const Outcome added = run({"sources", "add", folder.bytes(), "--chance", "50", "--days",
                             "sun,mon", "--screens", "1,2", "--disabled"});
  EXPECT_EQ(added.status, ExitStatus::success);
  EXPECT_EQ(list(), "off  50%  sun,mon  screens 1,2  " + folder.bytes() + "\n");
}

TEST_F(SourcesCommand, keepsTheOrderAndThePicturesFolder) {
  const FilePath pictures = home.mkdir("Pictures");
  const FilePath other = home.mkdir("other");
  run({"sources", "add", other.bytes()});
  EXPECT_EQ(list(), "on   100%  every day  all screens  " + pictures.bytes() +
                        "\non   100%  every day  all screens  " + other.bytes() + "\n");
}

TEST_F(SourcesCommand, doesNotKeepADefaultThatLeadsNowhere) {
  const FilePath other = home.mkdir("other");
  run({"sources", "add", other.bytes()});
  EXPECT_EQ(list(), "on   100%  every day  all screens  " + other.bytes() + "\n");
}

TEST_F(SourcesCommand, refusesWhatIsNoFolderOrThereAlready) {
  const FilePath folder = home.mkdir("a");
  home.write("file", "x");
  run({"sources", "add", folder.bytes()});
  EXPECT_NE(run({"sources", "add", folder.bytes()}).error.find("is in the list already"),
            std::string::npos);
  EXPECT_NE(
      run({"sources", "add", home.link("b", "a").bytes()}).error.find("is in the list already"),
      std::string::npos);
  EXPECT_NE(run({"sources", "add", (home.path() / "file").bytes()}).error.find("is not a folder"),
            std::string::npos);
  EXPECT_EQ(run({"sources", "add", folder.bytes(), "--chance", "0"}).status, ExitStatus::badUsage);
}

TEST_F(SourcesCommand, removesAFolderEvenWhenItHasGone) {
  const FilePath folder = home.mkdir("a");
  run({"sources", "add", folder.bytes()});
  std::filesystem::remove(folder.bytes());
  EXPECT_NE(list().find(folder.bytes() + "  (not found)"), std::string::npos);
  EXPECT_EQ(run({"sources", "remove", folder.bytes()}).status, ExitStatus::success);
  EXPECT_EQ(list(), "");
  EXPECT_EQ(run({"sources", "remove", folder.bytes()}).status, ExitStatus::failure);
}

TEST_F(SourcesCommand, takesNamesOfAnyBytes) {
  const FilePath folder = home.mkdir("caf\xE9\n");
  EXPECT_EQ(run({"sources", "add", folder.bytes()}).status, ExitStatus::success);
  EXPECT_NE(list().find("caf\\xE9\\x0A"), std::string::npos);
  EXPECT_EQ(run({"sources", "remove", folder.bytes()}).status, ExitStatus::success);
}

TEST_F(SourcesCommand, saysWhatItExpects) {
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"sources"}, {"sources", "add"}, {"sources", "list", "x"}}) {
    EXPECT_EQ(run(words).status, ExitStatus::badUsage);
  }
}

}  // namespace pelmora::host
