#include "platform/linux/index/MetadataStore.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/FileDescriptor.h"
#include "platform/linux/index/SqliteDatabase.h"
#include "platform/linux/index/StoreFile.h"
#include "platform/predicate/PredicateText.h"

#include <gmock/gmock.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <limits>
#include <thread>

namespace pelmora::platform {
namespace {

using predicate::Constant;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Entries = std::vector<MetadataStore::Entry>;

const FilePath kFolder("/Bilder/Été");

MetadataStore::Entry file(const std::string& name, std::int64_t bytes = 1) {
  MetadataStore::Entry entry;
  entry.name = name;
  entry.stamp = {.inode = 7, .bytes = bytes, .changeSeconds = 3, .changeNanoseconds = 4};
  entry.metadata.set("kMDItemFSSize", {Constant(bytes)});
  return entry;
}

std::vector<std::string> namesIn(MetadataStore& store, const FilePath& folder) {
  const auto everything = store.prepare(predicate::parsePredicate("TRUEPREDICATE").value());
  return store.matches(*everything, store.folderId(folder));
}

class MetadataStoreTest : public testing::Test {
 protected:
  std::unique_ptr<MetadataStore> open() {
    return std::make_unique<MetadataStore>(
        _path, [](const std::string& problem) { ADD_FAILURE() << problem; });
  }

  TemporaryFolder _folder;
  FilePath _path = _folder.path() / "cache/index";
};

TEST_F(MetadataStoreTest, keepsFilesFromRunToRun) {
  auto store = open();
  EXPECT_FALSE(store->isInMemory());
  const auto id = store->folderId(kFolder);
  EXPECT_THAT(store->filesIn(id), IsEmpty());
  store->put(id, kFolder, {file("a", 10), file("b", 20)});
  const auto revision = store->newestRevision();

  store = open();
  EXPECT_EQ(store->generation(), 1u);
  EXPECT_EQ(store->folderId(kFolder), id);
  EXPECT_EQ(store->newestRevision(), revision);
  const auto files = store->filesIn(id);
  EXPECT_THAT(files, SizeIs(2));
  EXPECT_EQ(files.at("b"), file("b", 20).stamp);
  EXPECT_EQ(store->stampOf(id, "a"), file("a", 10).stamp);
  EXPECT_EQ(store->stampOf(id, "c"), std::nullopt);
}

TEST_F(MetadataStoreTest, givesBackWhatIsKnownOfAFile) {
  const auto store = open();
  const auto id = store->folderId(kFolder);
  auto entry = file("a");
  entry.metadata.set("kMDItemKeywords", {Constant("Été"), Constant("")});
  store->put(id, kFolder, {entry});
  auto expected = entry.metadata;
  expected.set("kMDItemFSName", {Constant("a")});
  expected.set("kMDItemDisplayName", {Constant("a")});
  expected.set("kMDItemPath", {Constant("/Bilder/Été/a")});
  EXPECT_EQ(store->metadataOf(id, "a"), expected);
  EXPECT_EQ(store->metadataOf(id, "b"), std::nullopt);
  EXPECT_EQ(store->metadataOf(id + 1, "a"), std::nullopt);
}

TEST_F(MetadataStoreTest, keepsNamesAndStampsAsTheyAre) {
  const auto store = open();
  const auto id = store->folderId(kFolder);
  auto entry = file("\xFF'%\x1F\n");
  entry.stamp = {.inode = std::numeric_limits<std::uint64_t>::max(),
                 .bytes = std::numeric_limits<std::int64_t>::max(),
                 .changeSeconds = std::numeric_limits<std::int64_t>::min(),
                 .changeNanoseconds = -1};
  store->put(id, kFolder, {entry});
  EXPECT_EQ(store->stampOf(id, entry.name), entry.stamp);
  EXPECT_THAT(namesIn(*store, kFolder), ElementsAre(entry.name));
}

TEST_F(MetadataStoreTest, replacesAFileThatIsPutAgain) {
  const auto store = open();
  const auto id = store->folderId(kFolder);
  store->put(id, kFolder, {file("a", 1), file("b", 1)});
  const auto before = store->newestRevision();
  store->put(id, kFolder, {file("a", 2)});
  EXPECT_GT(store->newestRevision(), before);
  EXPECT_EQ(store->stampOf(id, "a"), file("a", 2).stamp);
  EXPECT_THAT(namesIn(*store, kFolder), ElementsAre("a", "b"));
}

TEST_F(MetadataStoreTest, takesFilesOut) {
  const auto store = open();
  const auto id = store->folderId(kFolder);
  store->put(id, kFolder, {file("a"), file("b"), file("c")});
  const auto before = store->newestRevision();
  store->remove(id, {"c", "a", "nosuch"});
  EXPECT_THAT(namesIn(*store, kFolder), ElementsAre("b"));
  store->put(id, kFolder, {file("c")});
  EXPECT_GT(store->newestRevision(), before) << "no revision comes again";
}

TEST_F(MetadataStoreTest, keepsFoldersApart) {
  const auto store = open();
  const FilePath other("/Bilder");
  store->put(store->folderId(kFolder), kFolder, {file("a")});
  store->put(store->folderId(other), other, {file("a"), file("b")});
  EXPECT_THAT(namesIn(*store, kFolder), ElementsAre("a"));
  EXPECT_THAT(namesIn(*store, other), ElementsAre("a", "b"));
}

TEST_F(MetadataStoreTest, entersNothingUnderTheIdOfAnotherFolder) {
  const auto store = open();
  const FilePath other("/Bilder");
  const auto id = store->folderId(kFolder);
  store->put(id, other, {file("a")});
  EXPECT_THAT(store->filesIn(id), IsEmpty());
  store->put(id + 5, kFolder, {file("a")});
  EXPECT_THAT(store->filesIn(id + 5), IsEmpty());
  store->put(id + 5, other, {file("a")});  // neither is known, as after it was forgotten
  EXPECT_EQ(store->folderId(other), id + 5);
  EXPECT_THAT(namesIn(*store, other), ElementsAre("a"));
}

TEST_F(MetadataStoreTest, forgetsFoldersThatNobodyUses) {
  const auto store = open();
  const FilePath old("/old");
  const auto id = store->folderId(old);
  store->put(id, old, {file("a")});
  store->put(store->folderId(kFolder), kFolder, {file("b")});
  SqliteDatabase(_path.bytes()).run("UPDATE folders SET used = used - 30 WHERE id = 1");
  store->forgetUnused(30);
  EXPECT_THAT(store->filesIn(id), SizeIs(1));
  store->forgetUnused(29);
  EXPECT_THAT(store->filesIn(id), IsEmpty());
  EXPECT_THAT(namesIn(*store, kFolder), ElementsAre("b"));
  EXPECT_GT(store->folderId(old), id) << "no id comes again";
}

TEST_F(MetadataStoreTest, countsAFolderAsUsedWhenItIsAskedFor) {
  const auto store = open();
  const auto id = store->folderId(kFolder);
  SqliteDatabase(_path.bytes()).run("UPDATE folders SET used = used - 30");
  EXPECT_EQ(store->folderId(kFolder), id);
  store->forgetUnused(1);
  EXPECT_EQ(store->folderId(kFolder), id);
}

TEST_F(MetadataStoreTest, isKeptInMemoryWithoutAFile) {
  MetadataStore store(FilePath(), {});
  EXPECT_TRUE(store.isInMemory());
  store.put(store.folderId(kFolder), kFolder, {file("a")});
  EXPECT_THAT(namesIn(store, kFolder), ElementsAre("a"));
}

TEST_F(MetadataStoreTest, isSharedByThoseWhoWriteAtTheSameTime) {
  constexpr int kBatches = 20;
  const auto writeInto = [this](const FilePath& folder) {
    const auto store = open();
    for (int i = 0; i < kBatches; ++i) {
      store->put(store->folderId(folder), folder, {file(std::to_string(i)), file("same", i)});
    }
  };
  const FilePath other("/Bilder");
  std::thread writer([&] { writeInto(other); });
  writeInto(kFolder);
  writer.join();
  const auto store = open();
  EXPECT_THAT(namesIn(*store, kFolder), SizeIs(kBatches + 1));
  EXPECT_THAT(namesIn(*store, other), SizeIs(kBatches + 1));
  EXPECT_EQ(store->newestRevision(), 4 * kBatches);
}

TEST_F(MetadataStoreTest, showsWhatAnotherHasWritten) {
  const auto store = open();
  const auto other = open();
  const auto query = store->prepare(predicate::parsePredicate("kMDItemFSSize == 5").value());
  const auto id = store->folderId(kFolder);
  EXPECT_THAT(store->matches(*query, id), IsEmpty());
  const auto before = store->newestRevision();
  other->put(other->folderId(kFolder), kFolder, {file("a", 5)});
  EXPECT_GT(store->newestRevision(), before);
  EXPECT_THAT(store->matches(*query, id, before), ElementsAre("a"));
}

TEST_F(MetadataStoreTest, tellsWhatWasInVainWhileAnotherWrites) {
  std::vector<std::string> problems;
  MetadataStore store(_path, [&](const std::string& problem) { problems.push_back(problem); },
                      {.atMost = std::chrono::milliseconds(1)});
  const auto id = store.folderId(kFolder);
  EXPECT_EQ(store.failures(), 0u);
  {
    SqliteDatabase other(_path.bytes());
    const SqliteTransaction writing(other);
    store.put(id, kFolder, {file("a")});
    EXPECT_EQ(store.failures(), 1u);
    store.remove(id, {"a"});
    EXPECT_EQ(store.folderId(FilePath("/other")), 0);
    EXPECT_EQ(store.failures(), 3u);
    EXPECT_EQ(store.folderId(kFolder), id);
    EXPECT_EQ(store.failures(), 3u);
  }
  store.put(0, kFolder, {file("a")});
  EXPECT_EQ(store.failures(), 4u) << "0 is no folder";
  EXPECT_THAT(problems, SizeIs(1));
}

TEST_F(MetadataStoreTest, isKeptInMemoryWhereAnotherDoesNotLetItIn) {
  StoreFile other(_path);
  const auto lock = other.lock();
  ASSERT_TRUE(lock.ok());
  const MetadataStore store(_path, {}, {.atMost = std::chrono::milliseconds(1)});
  EXPECT_TRUE(store.isInMemory());
}

/// Writes until it is killed, and says when the first batch is done.
[[noreturn]] void writeForever(const FilePath& path, int tell) {
  MetadataStore store(path, {});
  for (int i = 0;; ++i) {
    Entries entries;
    for (int k = 0; k < 64; ++k) entries.push_back(file(std::to_string(i * 64 + k)));
    store.put(store.folderId(kFolder), kFolder, entries);
    if (::write(tell, "x", 1) != 1) ::_exit(1);
  }
}

TEST_F(MetadataStoreTest, isWholeAfterAWriterIsKilled) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  const FileDescriptor reading(ends[0]);
  FileDescriptor writing(ends[1]);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) writeForever(_path, writing.get());
  writing = FileDescriptor();
  std::array<char, 5> batches{};
  for (char& batch : batches) EXPECT_EQ(::read(reading.get(), &batch, 1), 1);
  ::kill(child, SIGKILL);
  EXPECT_EQ(::waitpid(child, nullptr, 0), child);

  const auto store = open();
  const std::size_t found = namesIn(*store, kFolder).size();
  EXPECT_GE(found, batches.size() * 64);
  EXPECT_EQ(found % 64, 0u) << "a batch is entered whole or not at all";
  SqliteDatabase database(_path.bytes());
  SqliteStatement check = database.prepare("PRAGMA integrity_check");
  auto execution = check.execute();
  ASSERT_TRUE(execution.step());
  EXPECT_EQ(execution.text(0), "ok");
}

}  // namespace
}  // namespace pelmora::platform
