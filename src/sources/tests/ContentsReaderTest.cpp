#include "sources/ContentsReader.h"

#include "sources/tests/SourcesTest.h"

namespace pelmora::sources {

namespace {

using Call = platform::CountingFiles::Call;

class ContentsReaderTest : public SourcesTest {
 protected:
  ContentsReaderTest() {
    (void)temporary.write("p/a.jpg");
    (void)temporary.write("p/b.jpg");
    (void)temporary.mkdir("p/sub");
    (void)temporary.write("leaf/c.jpg");
  }

  ReferenceTime dateOf(const FilePath& path) const {
    return fakes.files.facts(path, platform::FinalLink::refuse)->contentModificationDate;
  }

  FolderContents read(const FilePath& path) const {
    const auto found = reader.find(path);
    EXPECT_TRUE(found);
    const auto contents = found ? reader.readFolder(*found) : std::nullopt;
    EXPECT_TRUE(contents);
    return contents.value_or(FolderContents{makeNameList({}), nullptr});
  }

  const FilePath folder = temporary.path() / "p";
  const FilePath leaf = temporary.path() / "leaf";
  IdleOperation operation;
  ContentsReader reader{fakes.files, cache()};
};

}  // namespace

TEST_F(ContentsReaderTest, readsANewFolderWithOneListing) {
  const FolderContents contents = read(folder);
  EXPECT_EQ(names(contents.files), (Names{"a.jpg", "b.jpg"}));
  EXPECT_EQ(names(contents.folders), Names{"sub"});
  EXPECT_EQ(fakes.files.count(Call::list), 1U);
  EXPECT_EQ(fakes.files.count(Call::facts), 0U);
  EXPECT_EQ(fakes.files.count(Call::isPackage), 0U);
}

TEST_F(ContentsReaderTest, readsAnUnchangedFolderWithOneLook) {
  const FolderContents first = read(folder);
  (void)read(leaf);
  fakes.files.clearCounts();
  const FolderContents again = read(folder);
  EXPECT_EQ(again.files, first.files);
  EXPECT_EQ(names(again.folders), Names{"sub"});
  EXPECT_EQ(names(read(leaf).folders), Names{});
  EXPECT_EQ(fakes.files.count(Call::facts), 2U);
  EXPECT_EQ(fakes.files.count(Call::list), 0U);
  EXPECT_EQ(fakes.files.count(Call::isPackage), 0U);
}

TEST_F(ContentsReaderTest, readsAChangedFolderAnew) {
  cache().addFolder(folder, makeNameList({"old.jpg"}), makeNameList({"old"}), ReferenceTime{1});
  const FolderContents contents = read(folder);
  EXPECT_EQ(names(contents.files), (Names{"a.jpg", "b.jpg"}));
  EXPECT_EQ(names(contents.folders), Names{"sub"});
  EXPECT_EQ(cache().mdateOfFolder(folder), dateOf(folder));
}

TEST_F(ContentsReaderTest, sharesNamesWithTheCacheAndTheListing) {
  const FolderContents contents = read(leaf);
  EXPECT_EQ(cache().fileNamesOfFolder(leaf), contents.files);
}

TEST_F(ContentsReaderTest, keepsNoEmptyNamesOfSubfolders) {
  (void)read(folder);
  (void)read(leaf);
  EXPECT_EQ(names(cache().folderNamesOfFolder(folder)), Names{"sub"});
  EXPECT_EQ(cache().folderNamesOfFolder(leaf), nullptr);
}

TEST_F(ContentsReaderTest, datesTheCachedNamesBeforeTheListing) {
  const auto found = reader.find(folder);
  const ReferenceTime listedAt = found->facts.contentModificationDate;
  (void)temporary.write("p/late.jpg");
  ASSERT_TRUE(reader.readFolder(*found));
  EXPECT_EQ(cache().mdateOfFolder(folder), listedAt);
}

TEST_F(ContentsReaderTest, doesNotKnowSubfoldersThatTheCacheLost) {
  cache().addFolder(folder, makeNameList({"a.jpg"}), nullptr);
  const auto facts = fakes.files.facts(folder, platform::FinalLink::refuse);
  const FolderContents contents = read(folder);
  EXPECT_EQ(names(contents.files), Names{"a.jpg"});
  if (facts->hasSubfolders) {
    EXPECT_EQ(contents.folders, nullptr);
  } else {  // the file system doesn't count them
    EXPECT_EQ(names(contents.folders), Names{});
  }
}

TEST_F(ContentsReaderTest, doesNotCountAFoundFolderAsUsed) {
  // Only a date that was asked for keeps an entry at the next save.
  cache().addFolder(folder, makeNameList({}), nullptr, ReferenceTime{1});
  const auto found = reader.find(folder);
  ASSERT_TRUE(found);
  EXPECT_EQ(found->listing, nullptr);
  EXPECT_EQ(fakes.files.count(Call::list), 0U);
}

TEST_F(ContentsReaderTest, findsNoPackageByItsName) {
  EXPECT_FALSE(reader.find(temporary.mkdir("x.app")));
}

TEST_F(ContentsReaderTest, readsNoPackageByItsContents) {
  (void)temporary.write("bundle/Contents/Info.plist");
  const FilePath bundle = temporary.path() / "bundle";
  EXPECT_FALSE(reader.readFolder(*reader.find(bundle)));
  EXPECT_EQ(cache().fileNamesOfFolder(bundle), nullptr);
  cache().addFolder(bundle, makeNameList({"a.jpg"}), makeNameList({"Contents"}));
  EXPECT_FALSE(reader.readFolder(*reader.find(bundle)));
}

TEST_F(ContentsReaderTest, seesThatACachedFolderBecameAPackage) {
  (void)temporary.write("bundle/Contents/Info.plist");
  const FilePath bundle = temporary.path() / "bundle";
  cache().addFolder(bundle, makeNameList({"a.jpg"}), nullptr, ReferenceTime{1});
  EXPECT_FALSE(reader.readFolder(*reader.find(bundle)));
}

TEST_F(ContentsReaderTest, readsAFolderWithContentsThatAreNoPackages) {
  (void)temporary.write("album/Contents/a.jpg");
  EXPECT_EQ(names(read(temporary.path() / "album").folders), Names{"Contents"});
}

TEST_F(ContentsReaderTest, skipsAPackageThatCannotBeLookedAt) {
  const FilePath package = temporary.mkdir("x.app");
  fakes.files.fail(Call::isPackage, package);
  EXPECT_FALSE(reader.find(package));
}

TEST_F(ContentsReaderTest, findsWhereAnAliasLeads) {
  const auto found = reader.find(temporary.link("alias", folder));
  ASSERT_TRUE(found);
  EXPECT_EQ(found->url, folder);
  EXPECT_TRUE(found->isAliasTarget);
  EXPECT_EQ(found->facts.identity,
            fakes.files.facts(folder, platform::FinalLink::refuse)->identity);
}

TEST_F(ContentsReaderTest, takesNoAliasForAPackage) {
  const auto found = reader.find(temporary.link("alias.app", folder));
  ASSERT_TRUE(found);
  EXPECT_EQ(found->url, folder);
}

TEST_F(ContentsReaderTest, findsNothingWhereThereIsNoFolder) {
  EXPECT_FALSE(reader.find(temporary.path() / "gone"));
  EXPECT_FALSE(reader.find(temporary.write("file.jpg")));
  EXPECT_FALSE(reader.find(temporary.link("toFile", folder / "a.jpg")));
  EXPECT_FALSE(reader.find(temporary.link("toNothing", "nowhere")));
  EXPECT_FALSE(reader.find(temporary.link("toItself", "toItself")));
}

TEST_F(ContentsReaderTest, takesAnAliasToAFolderForAFolder) {
  (void)temporary.link("p/toFolder", leaf);
  (void)temporary.link("p/toFile", leaf / "c.jpg");
  const FolderContents contents = read(folder);
  EXPECT_EQ(names(contents.files), (Names{"a.jpg", "b.jpg", "toFile"}));
  EXPECT_EQ(names(contents.folders), (Names{"sub", "toFolder"}));
}

TEST_F(ContentsReaderTest, takesAnAliasInASourceFolderForAFile) {
  (void)temporary.link("p/toFolder", leaf);
  const BaseFolderContents contents = reader.readBaseFolder(folder, operation);
  EXPECT_EQ(names(contents.names.files), (Names{"a.jpg", "b.jpg", "toFolder"}));
  EXPECT_EQ(names(contents.names.folders), Names{"sub"});
}

TEST_F(ContentsReaderTest, readsASourceFolderFromTheCacheWhileItsDateIsTheSame) {
  cache().addFolder(folder, makeNameList({"cached.jpg"}), makeNameList({"cached"}));
  const BaseFolderContents contents = reader.readBaseFolder(folder, operation);
  EXPECT_TRUE(contents.isFromCache);
  EXPECT_EQ(names(contents.names.files), Names{"cached.jpg"});
  EXPECT_EQ(names(contents.names.folders), Names{"cached"});
  EXPECT_EQ(fakes.files.count(Call::list), 0U);
}

TEST_F(ContentsReaderTest, readsASourceFolderAnewWhenItsDateCannotBeRead) {
  cache().addFolder(folder, makeNameList({"cached.jpg"}), nullptr);
  fakes.files.fail(Call::facts, folder);
  const BaseFolderContents contents = reader.readBaseFolder(folder, operation);
  EXPECT_FALSE(contents.isFromCache);
  EXPECT_EQ(names(contents.names.files), (Names{"a.jpg", "b.jpg"}));
}

TEST_F(ContentsReaderTest, leavesEnteringASourceFolderToTheWalk) {
  (void)reader.readBaseFolder(folder, operation);
  EXPECT_EQ(cache().fileNamesOfFolder(folder), nullptr);
}

TEST_F(ContentsReaderTest, followsALinkToASourceFolder) {
  const FilePath link = temporary.link("link", folder);
  const BaseFolderContents contents = reader.readBaseFolder(link, operation);
  EXPECT_EQ(names(contents.names.files), (Names{"a.jpg", "b.jpg"}));
}

TEST_F(ContentsReaderTest, endsTheListingOfASourceFolderWhereItIsCancelled) {
  operation.cancel();
  const BaseFolderContents contents = reader.readBaseFolder(folder, operation);
  EXPECT_EQ(contents.names.files->size() + contents.names.folders->size(), 1U);
  EXPECT_EQ(reader.readBaseFolder(leaf, operation).names.files->size(), 1U);
}

TEST_F(ContentsReaderTest, hasNoNamesOfAFolderThatCannotBeListed) {
  fakes.files.fail(Call::list, folder);
  const BaseFolderContents base = reader.readBaseFolder(folder, operation);
  EXPECT_EQ(names(base.names.files), Names{});
  EXPECT_FALSE(base.facts);
  EXPECT_EQ(names(read(folder).files), Names{});
  EXPECT_EQ(names(reader.subfolderNamesOf(folder)), Names{});
  EXPECT_EQ(names(cache().fileNamesOfFolder(folder)), Names{});
}

TEST_F(ContentsReaderTest, takesCachedSubfoldersWhateverTheDate) {
  cache().addFolder(folder, makeNameList({}), makeNameList({"cached"}), ReferenceTime{1});
  EXPECT_EQ(names(reader.subfolderNamesOf(folder)), Names{"cached"});
  EXPECT_EQ(fakes.files.count(Call::list), 0U);
}

TEST_F(ContentsReaderTest, looksForSubfoldersThatTheCacheDoesNotKnow) {
  cache().addFolder(folder, makeNameList({"a.jpg"}), nullptr);
  (void)temporary.link("p/toFolder", leaf);
  EXPECT_EQ(names(reader.subfolderNamesOf(folder)), (Names{"sub", "toFolder"}));
  EXPECT_EQ(names(cache().folderNamesOfFolder(folder)), (Names{"sub", "toFolder"}));
}

TEST_F(ContentsReaderTest, findsNoSubfoldersUnderALink) {
  EXPECT_EQ(names(reader.subfolderNamesOf(temporary.link("link", folder))), Names{});
}

}  // namespace pelmora::sources
