#pragma once

#include "platform/linux/index/SqliteDatabase.h"

namespace pelmora::platform {

/// Pointers to `PredicateCall` are bound as of this type.
inline constexpr const char* kPredicateCallType = "pelmora.PredicateCall";

/// Makes the function `kPredicateFunction(call, attribute...)` known to a database: 1 where the
/// call's predicate holds of these attributes, else 0; 0 without a call.
void definePredicateFunction(SqliteDatabase& database);

}  // namespace pelmora::platform
