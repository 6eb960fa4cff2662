#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/index/MetadataStore.h"
#include "platform/linux/index/SqliteDatabase.h"
#include "platform/predicate/PredicateText.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <iterator>
#include <random>

namespace pelmora::platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::size_t kFiles = 300;
const FilePath kFolder("/Bilder");

std::vector<MetadataStore::Entry> someFiles(std::size_t count = kFiles) {
  std::vector<MetadataStore::Entry> entries(count);
  for (std::size_t i = 0; i < count; ++i) {
    entries[i].name = "IMG_" + std::to_string(i);
    entries[i].metadata.set("kMDItemTitle", {predicate::Constant(std::string(300, 'x'))});
  }
  return entries;
}

class MetadataStoreDamage : public testing::Test {
 protected:
  std::unique_ptr<MetadataStore> open() {
    return std::make_unique<MetadataStore>(
        _path, [this](const std::string& problem) { _problems.push_back(problem); });
  }
  /// A database that holds something and that nobody has open.
  void fill() {
    auto store = open();
    store->put(store->folderId(kFolder), kFolder, someFiles());
  }
  [[nodiscard]] std::string bytes() const {
    std::ifstream file(_path.bytes(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  /// In place.
  void overwrite(std::size_t begin, const std::string& bytes) const {
    std::fstream file(_path.bytes(), std::ios::binary | std::ios::in | std::ios::out);
    file.seekp(static_cast<std::streamoff>(begin));
    file << bytes;
  }
  [[nodiscard]] std::size_t filesKnown(MetadataStore& store) const {
    return store.filesIn(store.folderId(kFolder)).size();
  }
  /// Whatever came before, what is put now is there.
  void expectThatItWorks(MetadataStore& store) const {
    for (int attempts = 0; attempts < 5; ++attempts) {  // each may find more damage
      const auto id = store.folderId(kFolder);
      store.put(id, kFolder, someFiles(1));
      if (store.stampOf(id, "IMG_0")) return;
    }
    ADD_FAILURE() << "nothing is kept";
  }

  TemporaryFolder _folder;
  FilePath _path = _folder.path() / "index";
  std::vector<std::string> _problems;
};

TEST_F(MetadataStoreDamage, beginsAnewWhereThereIsNoDatabase) {
  _folder.write("index", std::string(10'000, 'x'));
  const auto store = open();
  EXPECT_FALSE(store->isInMemory());
  EXPECT_THAT(_problems, ElementsAre(HasSubstr("begins anew: ")));
  expectThatItWorks(*store);
}

TEST_F(MetadataStoreDamage, beginsAnewForAnotherVersion) {
  fill();
  SqliteDatabase(_path.bytes()).run("PRAGMA user_version = 7");
  const auto store = open();
  EXPECT_THAT(_problems,
              ElementsAre("the index of metadata begins anew: it is of another version"));
  EXPECT_EQ(filesKnown(*store), 0u);
  expectThatItWorks(*store);
  EXPECT_FALSE(store->isInMemory());
}

TEST_F(MetadataStoreDamage, beginsAnewWhereTheFileIsCutShort) {
  fill();
  ASSERT_EQ(::truncate(_path.c_str(), 3 * 4096 + 17), 0);
  const auto store = open();
  EXPECT_EQ(filesKnown(*store), 0u);
  EXPECT_THAT(_problems, SizeIs(1));
  expectThatItWorks(*store);
  EXPECT_FALSE(store->isInMemory());
}

TEST_F(MetadataStoreDamage, livesThroughAnyBytes) {
  fill();
  const std::string whole = bytes();
  std::mt19937 random(7);
  for (int round = 0; round < 6; ++round) {
    _folder.write("index", whole);
    for (int i = 0; i < 30; ++i) {
      const std::size_t at = random() % (whole.size() - 64);
      overwrite(at, std::string(1 + random() % 64, static_cast<char>(random() % 256)));
    }
    const auto store = open();
    const auto query = store->prepare(
        predicate::parsePredicate("kMDItemTitle CONTAINS 'x' OR kMDItemKeywords LIKE 'a'").value());
    const auto id = store->folderId(kFolder);
    (void)store->matches(*query, id);
    (void)store->metadataOf(id, "IMG_100");
    store->remove(id, {"IMG_7"});
    (void)store->newestRevision();
    (void)filesKnown(*store);
    store->forgetUnused(1);
    store->put(id, kFolder, someFiles(20));
    expectThatItWorks(*store);
  }
}

TEST_F(MetadataStoreDamage, beginsAnewWhileItIsUsed) {
  fill();
  const std::size_t size = bytes().size();
  const auto store = open();
  const auto query = store->prepare(predicate::parsePredicate("kMDItemTitle != NULL").value());
  const auto id = store->folderId(kFolder);
  overwrite(8 * 4096, std::string(size - 8 * 4096, '\xA5'));
  EXPECT_THAT(store->matches(*query, id), IsEmpty());
  EXPECT_EQ(store->generation(), 2u);
  EXPECT_THAT(_problems, ElementsAre(HasSubstr("malformed")));
  EXPECT_FALSE(store->isInMemory());
  store->put(store->folderId(kFolder), kFolder, someFiles(2));
  EXPECT_THAT(store->matches(*query, store->folderId(kFolder)), SizeIs(2)) << "by the old query";
}

TEST_F(MetadataStoreDamage, leavesWhatAnotherHasBegunAnew) {
  fill();
  const std::size_t size = bytes().size();
  const auto one = open();
  const auto other = open();
  overwrite(8 * 4096, std::string(size - 8 * 4096, '\xA5'));
  EXPECT_EQ(filesKnown(*one), 0u);
  one->put(one->folderId(kFolder), kFolder, someFiles(3));
  EXPECT_EQ(filesKnown(*other), 0u) << "finds the damage in what it has open";
  EXPECT_EQ(other->generation(), 2u);
  EXPECT_EQ(filesKnown(*other), 3u);
  EXPECT_EQ(one->generation(), 2u) << "its file is still there";
}

TEST_F(MetadataStoreDamage, beginsAnewWhenItsFileIsDeleted) {
  const auto store = open();
  store->put(store->folderId(kFolder), kFolder, someFiles());
  EXPECT_EQ(store->generation(), 1u);
  ASSERT_EQ(::unlink(_path.c_str()), 0);
  EXPECT_EQ(store->generation(), 2u);
  EXPECT_EQ(store->generation(), 2u);
  EXPECT_EQ(filesKnown(*store), 0u);
  expectThatItWorks(*store);
  EXPECT_EQ(open()->generation(), 1u);
  EXPECT_EQ(filesKnown(*open()), 1u);
}

TEST_F(MetadataStoreDamage, goesOnWithTheFileThatReplacedItsOwn) {
  fill();
  const std::string whole = bytes();
  ASSERT_EQ(::unlink(_path.c_str()), 0);
  const auto store = open();
  EXPECT_EQ(filesKnown(*store), 0u);
  _folder.write("other", whole);
  ASSERT_EQ(::rename((_folder.path() / "other").c_str(), _path.c_str()), 0);
  EXPECT_EQ(store->generation(), 2u);
  EXPECT_EQ(filesKnown(*store), kFiles);
}

TEST_F(MetadataStoreDamage, leavesTheFileOfAnotherVersionThatRuns) {
  const auto store = open();
  ASSERT_EQ(::unlink(_path.c_str()), 0);
  SqliteDatabase(_path.bytes()).run("PRAGMA user_version = 7; CREATE TABLE theirs(a)");
  const std::string theirs = bytes();
  EXPECT_EQ(store->generation(), 2u);
  EXPECT_TRUE(store->isInMemory());
  EXPECT_TRUE(bytes() == theirs);
  expectThatItWorks(*store);
}

TEST_F(MetadataStoreDamage, isKeptInMemoryWhereNoFileCanBe) {
  for (const FilePath& path : {_folder.write("file") / "index", _folder.mkdir("folder")}) {
    _problems.clear();
    _path = path;
    const auto store = open();
    EXPECT_TRUE(store->isInMemory());
    EXPECT_THAT(_problems, ElementsAre(HasSubstr("is kept in memory: ")));
    expectThatItWorks(*store);
    EXPECT_EQ(store->generation(), 1u);
  }
}

/// No file grows beyond so many bytes while this is there.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : _handler(std::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &_before);
    const struct rlimit limit = {bytes, _before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &_before);
    std::signal(SIGXFSZ, _handler);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  struct rlimit _before {};
  void (*_handler)(int);
};

TEST_F(MetadataStoreDamage, goesOnInMemoryWhenTheDiskIsFull) {
  const auto store = open();
  const auto id = store->folderId(kFolder);
  {
    const FileSizeLimit full(100'000);
    for (int i = 0; i < 5; ++i) store->put(id, kFolder, someFiles());
  }
  EXPECT_TRUE(store->isInMemory());
  EXPECT_EQ(store->generation(), 2u);
  EXPECT_THAT(_problems, ElementsAre(HasSubstr("is kept in memory: ")));
  EXPECT_EQ(filesKnown(*store), kFiles);
}

TEST_F(MetadataStoreDamage, takesWhatIsDamagedTimeAndAgainIntoMemory) {
  const auto store = open();
  for (int i = 0; i < 4; ++i) {
    EXPECT_FALSE(store->isInMemory());
    store->put(store->folderId(kFolder), kFolder, someFiles());
    SqliteDatabase(_path.bytes()).run("DROP TABLE files");
    EXPECT_EQ(filesKnown(*store), 0u);
  }
  EXPECT_TRUE(store->isInMemory());
  EXPECT_THAT(_problems, SizeIs(4));
  expectThatItWorks(*store);
}

TEST_F(MetadataStoreDamage, givesUpWhatFailsInMemoryAgainAndAgain) {
  MetadataStore store({}, [this](const std::string& problem) { _problems.push_back(problem); });
  const FilePath endless("/" + std::string(17 << 20, 'x'));
  for (int i = 0; i < 5; ++i) EXPECT_EQ(store.folderId(endless), 0);
  const std::uint64_t generation = store.generation();
  EXPECT_THAT(_problems, SizeIs(3));
  EXPECT_EQ(store.folderId(endless), 0);
  EXPECT_EQ(store.generation(), generation);
  EXPECT_THAT(_problems, SizeIs(3));
  expectThatItWorks(store);
}

}  // namespace
}  // namespace pelmora::platform
