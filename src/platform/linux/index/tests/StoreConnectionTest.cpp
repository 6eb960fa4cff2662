#include "platform/linux/index/StoreConnection.h"

#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/index/StoreSchema.h"

#include <gtest/gtest.h>

namespace pelmora::platform {
namespace {

bool isOtherVersion(const FilePath& path) {
  try {
    const StoreConnection connection(path.bytes());
  } catch (const SqliteError& error) {
    return error.kind() == SqliteError::Kind::otherVersion;
  }
  return false;
}

std::string answerOf(SqliteDatabase& database, const char* sql) {
  SqliteStatement statement = database.prepare(sql);
  auto execution = statement.execute();
  return execution.step() ? execution.text(0) : "";
}

TEST(StoreConnection, findsTheTablesThatItMade) {
  const TemporaryFolder folder;
  const FilePath path = folder.path() / "index";
  { const StoreConnection made(path.bytes()); }
  StoreConnection found(path.bytes());
  EXPECT_EQ(answerOf(found.database, "SELECT count(*) FROM files"), "0");
  EXPECT_EQ(answerOf(found.database, "PRAGMA user_version"), std::to_string(schemaVersion()));
  EXPECT_EQ(answerOf(found.database, "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(answerOf(found.database, "PRAGMA trusted_schema"), "0");
}

TEST(StoreConnection, refusesWhatIsNotOurs) {
  for (const char* change : {
           "PRAGMA user_version = 7",
           "CREATE TABLE more(a)",
           "CREATE VIEW files2 AS SELECT 1",
           "CREATE TRIGGER t AFTER INSERT ON files BEGIN DELETE FROM files; END",
           "DROP INDEX filesOfFolder",
           "ALTER TABLE files ADD COLUMN more BLOB",
       }) {
    const TemporaryFolder folder;
    const FilePath path = folder.path() / "index";
    StoreConnection(path.bytes()).database.run(change);
    EXPECT_TRUE(isOtherVersion(path)) << change;
  }
}

TEST(StoreConnection, refusesTheTablesOfAnother) {
  const TemporaryFolder folder;
  const FilePath path = folder.path() / "index";
  SqliteDatabase(path.bytes()).run("CREATE TABLE files(name)");
  EXPECT_TRUE(isOtherVersion(path));
}

TEST(StoreConnection, asksForFilesByAnIndex) {
  StoreConnection connection(":memory:");
  SqliteStatement plan = connection.database.prepare(
      "EXPLAIN QUERY PLAN SELECT name FROM files INDEXED BY filesOfFolder "
      "WHERE folder = ?1 AND id > ?2 AND (1)");
  auto execution = plan.execute();
  ASSERT_TRUE(execution.step());
  EXPECT_NE(execution.text(3).find("filesOfFolder (folder=? AND rowid>?)"), std::string::npos)
      << execution.text(3);
}

}  // namespace
}  // namespace pelmora::platform
