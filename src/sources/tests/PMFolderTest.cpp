#include "sources/PMFolder.h"

#include "sources/ContentsReader.h"
#include "sources/tests/SourcesTest.h"

#include <gmock/gmock.h>

#include <clocale>
#include <stdexcept>

namespace pelmora::sources {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StrEq;

class PMFolderTest : public SourcesTest {
 protected:
  PMFolder read(const FilePath& folder) {
    return {folder, false, {.fileMan = &reader}, 1, "", 127};
  }

  /// What the constructor says about these ways of getting the contents.
  std::string assertion(const PMFolder::Contents& contents) {
    try {
      (void)PMFolder(temporary.path(), false, contents, 1, "", 127);
    } catch (const std::logic_error& error) {
      return error.what();
    }
    return "";
  }

  ContentsReader reader{fakes.files, cache()};
};

constexpr const char* kAssertion =
    "PMFolder:39: You really only need to pass one of these; fileMan, or (contents or "
    "contentNames).";

}  // namespace

TEST_F(PMFolderTest, assertsThatContentsComeFromExactlyOneSide) {
  const SharedNames names = makeNameList({"a"});
  const std::vector<FilePath> files{FilePath("/a")};
  EXPECT_EQ(assertion({}), kAssertion);
  EXPECT_EQ(assertion({.fileMan = &reader, .contentNames = names}), kAssertion);
  EXPECT_EQ(assertion({.fileMan = &reader, .contents = files}), kAssertion);
  EXPECT_EQ(assertion({.fileMan = &reader}), "");
  EXPECT_EQ(assertion({.contents = files}), "");
  EXPECT_EQ(assertion({.contentNames = names}), "");
  EXPECT_EQ(assertion({.contents = files, .contentNames = names}), "");
}

TEST_F(PMFolderTest, takesNamesAsTheyAre) {
  const SharedNames names = makeNameList({"b", "a"});
  const PMFolder record(FilePath("/p"), true, {.contentNames = names}, 0.5, "1,2", 65);
  EXPECT_EQ(record.filenames, names);
  EXPECT_TRUE(record.isBaseFolder);
  EXPECT_EQ(record.url, FilePath("/p"));
  EXPECT_EQ(record.priority, 0.5);
  EXPECT_EQ(record.screens, "1,2");
  EXPECT_EQ(record.days, 65U);
}

TEST_F(PMFolderTest, takesTheLastComponentsOfFiles) {
  const PMFolder record(FilePath("/p"), false,
                        {.contents = {{FilePath("/p/b.jpg"), FilePath("/q/a.jpg")}}}, 1, "", 127);
  EXPECT_EQ(inOrder(record.filenames), (Names{"b.jpg", "a.jpg"}));
}

TEST_F(PMFolderTest, prefersNamesToFiles) {
  const PMFolder record(FilePath("/p"), false,
                        {.contents = {{FilePath("/p/b.jpg")}}, .contentNames = makeNameList({"a"})},
                        1, "", 127);
  EXPECT_EQ(inOrder(record.filenames), Names{"a"});
}

TEST_F(PMFolderTest, readsAFolderThatTheCacheDoesNotKnow) {
  const FilePath folder = temporary.mkdir("p");
  (void)temporary.write("p/a.jpg");
  (void)temporary.write("p/b.txt");
  (void)temporary.mkdir("p/sub");
  const PMFolder record = read(folder);
  EXPECT_EQ(names(record.filenames), (Names{"a.jpg", "b.txt"}));
  EXPECT_EQ(cache().fileNamesOfFolder(folder), record.filenames);
  EXPECT_EQ(cache().mdateOfFolder(folder),
            fakes.files.facts(folder, platform::FinalLink::refuse)->contentModificationDate);
  EXPECT_EQ(fakes.log.count("Pelmora: caching folder p with 2 files and 0 folders."), 1U);
}

TEST_F(PMFolderTest, doesNotListAFolderThatDidNotChange) {
  const FilePath folder = temporary.mkdir("p");
  (void)temporary.write("p/a.jpg");
  // Known by another name: what is told is what is cached, for as long as the date is the same.
  cache().addFolder(folder, makeNameList({"cached.jpg"}), nullptr);
  fakes.files.clearCounts();
  EXPECT_EQ(names(read(folder).filenames), (Names{"cached.jpg"}));
  EXPECT_EQ(fakes.files.count(platform::CountingFiles::Call::list), 0U);
}

TEST_F(PMFolderTest, listsAFolderThatChanged) {
  const FilePath folder = temporary.mkdir("p");
  (void)temporary.write("p/a.jpg");
  cache().addFolder(folder, makeNameList({"old.jpg"}), nullptr, ReferenceTime{1});
  EXPECT_EQ(names(read(folder).filenames), (Names{"a.jpg"}));
  EXPECT_EQ(names(cache().fileNamesOfFolder(folder)), (Names{"a.jpg"}));
}

TEST_F(PMFolderTest, leavesHiddenNamesAndAliasesToFoldersOut) {
  const FilePath folder = temporary.mkdir("p");
  (void)temporary.write("p/a.jpg");
  (void)temporary.write("p/.hidden.jpg");
  (void)temporary.mkdir("p/.hiddenFolder");
  (void)temporary.link("p/toFile", temporary.write("elsewhere.jpg"));
  (void)temporary.link("p/toFolder", temporary.mkdir("elsewhere"));
  (void)temporary.link("p/toNothing", "nowhere");
  EXPECT_EQ(names(read(folder).filenames), (Names{"a.jpg", "toFile", "toNothing"}));
}

TEST_F(PMFolderTest, hasNoNamesWhenTheFolderCannotBeListed) {
  const FilePath folder = temporary.mkdir("p");
  (void)temporary.write("p/a.jpg");
  fakes.files.fail(platform::CountingFiles::Call::list, folder);
  EXPECT_TRUE(read(folder).filenames->empty());
  EXPECT_TRUE(read(temporary.path() / "gone").filenames->empty());
}

TEST_F(PMFolderTest, describesItself) {
  PMFolder record(FilePath("/p/q"), true, {.contentNames = makeNameList({"a", "b"})}, 0.25, "",
                  127);
  EXPECT_THAT(record.description(),
              StrEq("PMFolder: base=1, /p/q, priority 0.250000, screens all, days 127, 2 files"));
  record.isBaseFolder = false;
  record.screens = "1,3";
  EXPECT_THAT(record.description(),
              StrEq("PMFolder: base=0, /p/q, priority 0.250000, screens 1,3, days 127, 2 files"));
}

TEST_F(PMFolderTest, describesItselfTheSameInEveryLanguage) {
  PMFolder record;
  record.priority = 0.25;
  // Where the locale is not installed, this is the same test in the one that is set.
  std::setlocale(LC_NUMERIC, "de_DE.UTF-8");
  EXPECT_THAT(record.description(), testing::HasSubstr(", priority 0.250000, screens all, "));
  std::setlocale(LC_NUMERIC, "C");
}

TEST_F(PMFolderTest, describesAnyPriority) {
  PMFolder record;
  record.priority = 1e308;
  EXPECT_GT(record.description().size(), 309U);
}

TEST_F(PMFolderTest, appendsSpotlightNames) {
  PMFolder record;
  EXPECT_THAT(record.spotlightFilenames, IsEmpty());
  record.addSpotlightFilename("a.jpg");
  EXPECT_THAT(record.spotlightFilenames, ElementsAre("a.jpg"));
  record.addSpotlightFilename("b.jpg");
  record.addSpotlightFilename("b.jpg");
  EXPECT_THAT(record.spotlightFilenames, ElementsAre("a.jpg", "b.jpg", "b.jpg"));
}

TEST_F(PMFolderTest, isEmptyAtFirst) {
  const PMFolder record;
  EXPECT_TRUE(record.filenames->empty());
  EXPECT_FALSE(record.identity);
}

}  // namespace pelmora::sources
