#include "platform/linux/index/PredicateFunction.h"

#include "platform/linux/index/PredicateSql.h"
#include "platform/linux/index/StoreSchema.h"
#include "platform/predicate/PredicateEvaluation.h"

#include <new>

namespace pelmora::platform {

namespace {

/// The attributes of a file that a call names.
class CalledMetadata : public predicate::Metadata {
 public:
  CalledMetadata(const PredicateCall& call, std::span<sqlite3_value*> stored) : _call(call) {
    const std::size_t count = std::min(call.attributes.size(), stored.size());
    _values.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
      _values.push_back(valuesIn(sqlValue(stored[i]), call.attributes[i]));
    }
  }

  [[nodiscard]] std::span<const predicate::Constant> values(
      std::string_view attribute) const override {
    for (std::size_t i = 0; i < _values.size(); ++i) {
      if (metadata::attributeTable()[_call.attributes[i]].name == attribute) return _values[i];
    }
    return {};
  }

 private:
  const PredicateCall& _call;
  std::vector<std::vector<predicate::Constant>> _values;
};

void evaluate(sqlite3_context* context, int count, sqlite3_value** arguments) {
  const void* const pointer =
      count > 0 ? sqlite3_value_pointer(arguments[0], kPredicateCallType) : nullptr;
  if (!pointer) return sqlite3_result_int(context, 0);
  // Nothing may be thrown through SQLite.
  try {
    const auto& call = *static_cast<const PredicateCall*>(pointer);
    const CalledMetadata metadata(call, {arguments + 1, static_cast<std::size_t>(count - 1)});
    sqlite3_result_int(context, predicate::matches(call.predicate, metadata) ? 1 : 0);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  }
}

}  // namespace

void definePredicateFunction(SqliteDatabase& database) {
  const int flags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY;
  const int code = sqlite3_create_function_v2(database.handle(), kPredicateFunction, -1, flags,
                                              nullptr, evaluate, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) throw SqliteError(code, database.handle());
}

}  // namespace pelmora::platform
