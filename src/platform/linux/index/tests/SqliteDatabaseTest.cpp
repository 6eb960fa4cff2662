#include "platform/linux/index/SqliteDatabase.h"

#include "platform/fake/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <optional>

namespace pelmora::platform {
namespace {

using Kind = SqliteError::Kind;

template <typename Action>
std::optional<Kind> kindOfErrorIn(const Action& action) {
  try {
    action();
  } catch (const SqliteError& error) {
    EXPECT_STRNE(error.what(), "");
    return error.kind();
  }
  return std::nullopt;
}

std::int64_t countOf(SqliteDatabase& database) {
  SqliteStatement statement = database.prepare("SELECT count(*) FROM t");
  auto execution = statement.execute();
  EXPECT_TRUE(execution.step());
  return execution.integer(0);
}

TEST(SqliteDatabase, givesBackBytesAsTheyWere) {
  SqliteDatabase database(":memory:");
  SqliteStatement statement = database.prepare("SELECT ?1, ?2, ?3, ?4, ?5, 'text'");
  auto execution = statement.execute();
  using namespace std::string_view_literals;
  execution.bind(1, "a\0\xFF'"sv);
  execution.bindCopy(2, std::string_view());
  execution.bind(3, std::int64_t{-7});
  execution.bind(4, 0.5);
  ASSERT_TRUE(execution.step());
  EXPECT_EQ(execution.bytes(0), "a\0\xFF'"sv);
  EXPECT_EQ(execution.value(1), SqlValue(""sv));
  EXPECT_EQ(execution.value(2), SqlValue(std::int64_t{-7}));
  EXPECT_EQ(execution.value(3), SqlValue(0.5));
  EXPECT_EQ(execution.value(4), SqlValue());
  EXPECT_EQ(execution.value(5), SqlValue()) << "text is none of ours";
  EXPECT_EQ(execution.text(5), "text");
  EXPECT_FALSE(execution.step());
}

TEST(SqliteDatabase, leavesAStatementReadyForItsNextExecution) {
  SqliteDatabase database(":memory:");
  SqliteStatement statement = database.prepare("SELECT ?1");
  {
    auto execution = statement.execute();
    execution.bind(1, std::int64_t{1});
    ASSERT_TRUE(execution.step());
  }
  auto execution = statement.execute();
  ASSERT_TRUE(execution.step());
  EXPECT_EQ(execution.value(0), SqlValue()) << "what was bound is forgotten";
}

TEST(SqliteDatabase, undoesATransactionThatIsNotCommitted) {
  SqliteDatabase database(":memory:");
  database.run("CREATE TABLE t(a)");
  {
    SqliteTransaction transaction(database);
    database.run("INSERT INTO t VALUES(1)");
  }
  EXPECT_EQ(countOf(database), 0);
  {
    SqliteTransaction transaction(database);
    database.run("INSERT INTO t VALUES(1)");
    transaction.commit();
  }
  EXPECT_EQ(countOf(database), 1);
}

TEST(SqliteDatabase, tellsWhyItFails) {
  const TemporaryFolder folder;
  const FilePath noDatabase = folder.write("noDatabase", std::string(4096, 'x'));
  EXPECT_EQ(kindOfErrorIn([&] { SqliteDatabase(noDatabase.bytes()).run("CREATE TABLE t(a)"); }),
            Kind::damaged);
  EXPECT_EQ(kindOfErrorIn([&] { SqliteDatabase((folder.path() / "no/file").bytes()); }),
            Kind::unusable);
  EXPECT_EQ(kindOfErrorIn([&] { SqliteDatabase(":memory:").run("SELECT a FROM missing"); }),
            Kind::damaged);
  SqliteDatabase full(":memory:");
  full.run("PRAGMA max_page_count = 2; CREATE TABLE t(a)");
  EXPECT_EQ(kindOfErrorIn([&] { full.run("INSERT INTO t VALUES(zeroblob(100000))"); }),
            Kind::unusable);
}

TEST(SqliteDatabase, tellsWhenAnotherIsWriting) {
  const TemporaryFolder folder;
  const std::string path = (folder.path() / "file").bytes();
  SqliteDatabase one(path);
  SqliteDatabase other(path);
  sqlite3_busy_timeout(other.handle(), 0);
  const SqliteTransaction transaction(one);
  EXPECT_EQ(kindOfErrorIn([&] { const SqliteTransaction second(other); }), Kind::busy);
}

TEST(SqliteDatabase, opensNoSymbolicLink) {
  const TemporaryFolder folder;
  const FilePath real = folder.write("real");
  const FilePath link = folder.link("link", real);
  EXPECT_EQ(kindOfErrorIn([&] { SqliteDatabase(link.bytes()).run("CREATE TABLE t(a)"); }),
            Kind::unusable);
}

TEST(SqliteDatabase, takesNoFileForDamagedBecauseOfAValueThatIsTooLong) {
  SqliteDatabase database(":memory:");
  SqliteStatement statement = database.prepare("SELECT ?1");
  const std::string value((16 << 20) + 1, 'x');
  EXPECT_EQ(kindOfErrorIn([&] { statement.execute().bind(1, std::string_view(value)); }),
            Kind::unusable);
  EXPECT_EQ(kindOfErrorIn([&] { statement.execute().bindCopy(1, value); }), Kind::unusable);
}

TEST(SqliteDatabase, keepsValuesShort) {
  SqliteDatabase database(":memory:");
  database.run("CREATE TABLE t(a)");
  EXPECT_NE(kindOfErrorIn([&] { database.run("INSERT INTO t VALUES(zeroblob(100000000))"); }),
            std::nullopt);
}

}  // namespace
}  // namespace pelmora::platform
