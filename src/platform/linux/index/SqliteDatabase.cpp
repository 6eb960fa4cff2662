#include "platform/linux/index/SqliteDatabase.h"

namespace pelmora::platform {

namespace {

constexpr int kMostWaiting = 2000;  // milliseconds, for another process that writes
/// Longer values, rows and statements are none of ours.
constexpr int kMostBytes = 16 << 20;

SqliteError::Kind kindOf(int code) {
  if (code == SQLITE_IOERR_SHORT_READ || code == SQLITE_IOERR_CORRUPTFS) {
    return SqliteError::Kind::damaged;
  }
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return SqliteError::Kind::busy;
    case SQLITE_AUTH:
    case SQLITE_CANTOPEN:
    case SQLITE_FULL:
    case SQLITE_IOERR:
    case SQLITE_NOLFS:
    case SQLITE_NOMEM:
    case SQLITE_PERM:
    case SQLITE_READONLY:
      return SqliteError::Kind::unusable;
    default:
      // Our statements are right for what we wrote; where they fail, it is something else.
      return SqliteError::Kind::damaged;
  }
}

}  // namespace

SqliteError::SqliteError(int code, sqlite3* database)
    : SqliteError(kindOf(code), database ? sqlite3_errmsg(database) : sqlite3_errstr(code)) {}

SqlValue sqlValue(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      return std::int64_t{sqlite3_value_int64(value)};
    case SQLITE_FLOAT:
      return sqlite3_value_double(value);
    case SQLITE_BLOB: {
      const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
      const auto size = static_cast<std::size_t>(sqlite3_value_bytes(value));
      return bytes ? std::string_view(bytes, size) : std::string_view("");
    }
    default:
      return std::monostate();
  }
}

SqliteStatement::Execution::~Execution() {
  sqlite3_reset(_statement);
  sqlite3_clear_bindings(_statement);
}

void SqliteStatement::Execution::check(int code) const {
  if (code != SQLITE_OK) throw SqliteError(code, sqlite3_db_handle(_statement));
}

void SqliteStatement::Execution::checkBound(int code) const {
  // It is the value that is too big, and nothing in the file.
  if (code == SQLITE_TOOBIG) throw SqliteError(SqliteError::Kind::unusable, sqlite3_errstr(code));
  check(code);
}

int SqliteStatement::Execution::parameterCount() const {
  return sqlite3_bind_parameter_count(_statement);
}

void SqliteStatement::Execution::bind(int parameter, std::int64_t value) {
  check(sqlite3_bind_int64(_statement, parameter, value));
}

void SqliteStatement::Execution::bind(int parameter, double value) {
  check(sqlite3_bind_double(_statement, parameter, value));
}

void SqliteStatement::Execution::bind(int parameter, std::string_view bytes) {
  // No pointer would be no value.
  const char* const begin = bytes.data() ? bytes.data() : "";
  checkBound(sqlite3_bind_blob64(_statement, parameter, begin, bytes.size(), SQLITE_STATIC));
}

void SqliteStatement::Execution::bindCopy(int parameter, std::string_view bytes) {
  const char* const begin = bytes.data() ? bytes.data() : "";
  checkBound(sqlite3_bind_blob64(_statement, parameter, begin, bytes.size(), SQLITE_TRANSIENT));
}

void SqliteStatement::Execution::bindPointer(int parameter, const void* pointer, const char* type) {
  check(sqlite3_bind_pointer(_statement, parameter, const_cast<void*>(pointer), type, nullptr));
}

bool SqliteStatement::Execution::step() {
  const int code = sqlite3_step(_statement);
  if (code == SQLITE_ROW) return true;
  if (code != SQLITE_DONE) check(code);
  return false;
}

std::int64_t SqliteStatement::Execution::integer(int column) const {
  return sqlite3_column_int64(_statement, column);
}

std::string_view SqliteStatement::Execution::bytes(int column) const {
  const SqlValue found = value(column);
  const auto* bytes = std::get_if<std::string_view>(&found);
  return bytes ? *bytes : std::string_view();
}

std::string SqliteStatement::Execution::text(int column) const {
  const unsigned char* const text = sqlite3_column_text(_statement, column);
  return text ? reinterpret_cast<const char*>(text) : "";
}

SqlValue SqliteStatement::Execution::value(int column) const {
  return sqlValue(sqlite3_column_value(_statement, column));
}

SqliteDatabase::SqliteDatabase(const std::string& path) {
  sqlite3* handle = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX |
                    SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_EXRESCODE;
  const int code = sqlite3_open_v2(path.c_str(), &handle, flags, nullptr);
  _handle.reset(handle);
  if (code != SQLITE_OK) throw SqliteError(code, handle);
  sqlite3_busy_timeout(handle, kMostWaiting);
  // What a file says of itself starts nothing.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kMostBytes);
  sqlite3_limit(handle, SQLITE_LIMIT_ATTACHED, 0);
}

void SqliteDatabase::run(const std::string& sql) {
  const int code = sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) throw SqliteError(code, handle());
}

SqliteStatement SqliteDatabase::prepare(std::string_view sql) {
  sqlite3_stmt* prepared = nullptr;
  const int code = sqlite3_prepare_v3(handle(), sql.data(), static_cast<int>(sql.size()),
                                      SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
  SqliteStatement statement;
  statement._statement.reset(prepared);
  if (code != SQLITE_OK) throw SqliteError(code, handle());
  return statement;
}

SqliteTransaction::SqliteTransaction(SqliteDatabase& database) : _database(database) {
  _database.run("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
  // Some errors have undone it already.
  if (sqlite3_get_autocommit(_database.handle()) != 0) return;
  sqlite3_exec(_database.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
}

void SqliteTransaction::commit() { _database.run("COMMIT"); }

}  // namespace pelmora::platform
