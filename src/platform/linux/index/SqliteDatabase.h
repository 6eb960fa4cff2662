#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace pelmora::platform {

/// Why SQLite, or what lies in its file, let something down.
class SqliteError : public std::exception {
 public:
  enum class Kind : std::uint8_t {
    busy,          // another process is writing; later it may work
    damaged,       // the file is not, or no longer, what was written
    otherVersion,  // the file is another program's, or of another version
    unusable       // full, not allowed, out of order: nothing can be kept there
  };

  SqliteError(Kind kind, std::string reason) : _kind(kind), _reason(std::move(reason)) {}
  /// From an answer of SQLite's, with its own words.
  SqliteError(int code, sqlite3* database);

  [[nodiscard]] Kind kind() const { return _kind; }
  [[nodiscard]] const char* what() const noexcept override { return _reason.c_str(); }

 private:
  Kind _kind;
  std::string _reason;
};

/// A value in a row; neither text nor anything else that we do not store. Bytes are borrowed.
using SqlValue = std::variant<std::monostate, std::int64_t, double, std::string_view>;
[[nodiscard]] SqlValue sqlValue(sqlite3_value* value);

/// A statement that is prepared once and executed often. Thread: its database's.
class SqliteStatement {
 public:
  /// One execution: binds, steps, and leaves the statement ready for the next when it goes.
  class Execution {
   public:
    explicit Execution(sqlite3_stmt* statement) : _statement(statement) {}
    ~Execution();
    Execution(const Execution&) = delete;
    Execution& operator=(const Execution&) = delete;

    /// The highest number of a parameter that the statement mentions.
    [[nodiscard]] int parameterCount() const;
    // Parameters count from 1. Bytes are borrowed until the execution goes, or copied.
    void bind(int parameter, std::int64_t value);
    void bind(int parameter, double value);
    void bind(int parameter, std::string_view bytes);
    void bindCopy(int parameter, std::string_view bytes);
    /// For functions that ask for a pointer of this type; both are borrowed.
    void bindPointer(int parameter, const void* pointer, const char* type);

    /// To the next row; false: there is none.
    bool step();

    // Columns count from 0; borrowed until the next step. 0 and empty for a value of another kind.
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] std::string_view bytes(int column) const;
    [[nodiscard]] std::string text(int column) const;
    [[nodiscard]] SqlValue value(int column) const;

   private:
    void check(int code) const;
    void checkBound(int code) const;

    sqlite3_stmt* _statement;
  };

  [[nodiscard]] Execution execute() { return Execution(_statement.get()); }

 private:
  friend class SqliteDatabase;
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
  };
  std::unique_ptr<sqlite3_stmt, Finalizer> _statement;
};

/// A connection to a database. Thread: one at a time. Errors: everything throws `SqliteError`.
class SqliteDatabase {
 public:
  /// Opens or makes the file, which is no symbolic link; ":memory:" is in memory.
  explicit SqliteDatabase(const std::string& path);

  /// Runs statements of our own, whatever rows they give.
  void run(const std::string& sql);
  [[nodiscard]] SqliteStatement prepare(std::string_view sql);
  [[nodiscard]] sqlite3* handle() const { return _handle.get(); }

 private:
  struct Closer {
    // Later, if there still are statements.
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
  };
  std::unique_ptr<sqlite3, Closer> _handle;
};

/// A transaction that writes; undone when it goes without a commit. Thread: its database's.
class SqliteTransaction {
 public:
  explicit SqliteTransaction(SqliteDatabase& database);
  ~SqliteTransaction();
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;
  void commit();

 private:
  SqliteDatabase& _database;
};

}  // namespace pelmora::platform
