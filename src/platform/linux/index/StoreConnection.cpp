#include "platform/linux/index/StoreConnection.h"

#include "platform/linux/index/PredicateFunction.h"
#include "platform/linux/index/StoreSchema.h"

#include <algorithm>

namespace pelmora::platform {

namespace {

// Today is a day of the file's own: it is compared with nothing else.
constexpr const char* kToday = "(unixepoch() / 86400)";

bool isEmpty(SqliteDatabase& database) {
  SqliteStatement statement = database.prepare("SELECT 1 FROM sqlite_schema LIMIT 1");
  return !statement.execute().step();
}

int versionOf(SqliteDatabase& database) {
  SqliteStatement statement = database.prepare("PRAGMA user_version");
  auto execution = statement.execute();
  return execution.step() ? static_cast<int>(execution.integer(0)) : 0;
}

/// Whether there are our tables and nothing else, no trigger and no view.
bool hasOurTables(SqliteDatabase& database) {
  SqliteStatement statement = database.prepare(
      "SELECT sql FROM sqlite_schema WHERE sql IS NOT NULL AND name <> 'sqlite_sequence' "
      "ORDER BY rowid LIMIT 100");
  auto execution = statement.execute();
  std::vector<std::string> found;
  while (execution.step()) found.push_back(execution.text(0));
  const auto wanted = schemaStatements();
  return std::equal(found.begin(), found.end(), wanted.begin(), wanted.end());
}

}  // namespace

StoreConnection::StoreConnection(const std::string& path, std::chrono::milliseconds patience)
    : database(path) {
  database.run("PRAGMA busy_timeout = " + std::to_string(patience.count()));
  configure();
  const bool isNew = isEmpty(database);
  if (!isNew) checkTables();
  // Only now, as it changes the file. What is new may be lost with the power: it is empty.
  database.run("PRAGMA journal_mode = WAL");
  // A process that is killed loses nothing; a machine without power the last changes at most.
  database.run("PRAGMA synchronous = NORMAL");
  if (isNew) makeTables();
  definePredicateFunction(database);
  prepareStatements();
}

void StoreConnection::configure() {
  database.run(
      "PRAGMA cell_size_check = ON;"
      "PRAGMA synchronous = OFF;"
      "PRAGMA page_size = 16384;"              // bytes: a query reads all, and fewer are faster
      "PRAGMA wal_autocheckpoint = 500;"       // pages
      "PRAGMA journal_size_limit = 16777216;"  // bytes
      "PRAGMA cache_size = -6000;"             // KiB
      "PRAGMA mmap_size = 0;"                  // a file that is cut short would end us
      "PRAGMA temp_store = MEMORY;");
}

void StoreConnection::checkTables() {
  if (versionOf(database) != schemaVersion() || !hasOurTables(database)) {
    throw SqliteError(SqliteError::Kind::otherVersion, "it is of another version");
  }
}

void StoreConnection::makeTables() {
  SqliteTransaction transaction(database);
  for (const std::string& statement : schemaStatements()) database.run(statement);
  database.run("PRAGMA user_version = " + std::to_string(schemaVersion()));
  transaction.commit();
}

void StoreConnection::prepareStatements() {
  const std::string today = kToday;
  folderOfPath = database.prepare("SELECT id FROM folders WHERE path = ?1 AND used = " + today);
  enterFolder = database.prepare("INSERT INTO folders(path, used) VALUES(?1, " + today +
                                 ") ON CONFLICT(path) DO UPDATE SET used = excluded.used "
                                 "RETURNING id");
  enterFolderAs = database.prepare("INSERT OR IGNORE INTO folders(id, path, used) VALUES(?1, ?2, " +
                                   today + ")");
  pathOfFolder = database.prepare("SELECT path FROM folders WHERE id = ?1");
  const std::string inFolder = " FROM files INDEXED BY filesOfFolder WHERE folder = ?1";
  stampsInFolder = database.prepare(std::string("SELECT ") + kStampColumns + inFolder);
  stampOfFile = database.prepare(std::string("SELECT ") + kStampColumns +
                                 " FROM files WHERE folder = ?1 AND name = ?2");
  removeFile = database.prepare("DELETE FROM files WHERE folder = ?1 AND name = ?2");
  const std::string unused = "used < " + today + " - ?1";
  forgetFiles = database.prepare(
      "DELETE FROM files WHERE folder IN (SELECT id FROM folders WHERE " + unused + ")");
  forgetFolders = database.prepare("DELETE FROM folders WHERE " + unused);
  newestRevision = database.prepare("SELECT seq FROM sqlite_sequence WHERE name = 'files'");

  std::string columns;
  std::string parameters;
  std::string rawColumns;
  int parameter = kOwnParameters;
  for (const StoredColumn& column : storedColumns()) {
    columns += ", " + nameOf(column);
    parameters += ", ?" + std::to_string(++parameter);
    if (column.form == TextForm::raw) rawColumns += ", " + nameOf(column);
  }
  enterFile = database.prepare(std::string("INSERT OR REPLACE INTO files(folder, ") +
                               kStampColumns + ", folded" + columns +
                               ") VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7" + parameters + ")");
  attributesOfFile = database.prepare(
      "SELECT path" + rawColumns +
      " FROM files JOIN folders ON folders.id = folder WHERE folder = ?1 AND name = ?2");
}

SqliteStatement StoreConnection::prepareMatches(const std::string& condition) {
  return database.prepare(
      "SELECT name FROM files INDEXED BY filesOfFolder WHERE folder = ?1 AND id > ?2 AND (" +
      condition + ")");
}

}  // namespace pelmora::platform
