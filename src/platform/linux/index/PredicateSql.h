#pragma once

#include "platform/predicate/Predicate.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace pelmora::platform {

/// A predicate that SQL has no words for: the function `kPredicateFunction` evaluates it, given its
/// attributes in their order.
struct PredicateCall {
  predicate::Predicate predicate;
  std::vector<std::size_t> attributes;  // by their positions in the table
};

/// A condition over the rows of the table `files` that holds where a predicate does, exactly. It is
/// always true or false, never NULL. Values are in parameters alone, of the numbers
/// `kFirstParameter` and up in their order. Thread: a plain value.
struct SqlCondition {
  using Parameter = std::variant<std::int64_t, double, std::string, const PredicateCall*>;

  std::string sql;
  std::vector<Parameter> parameters;
  std::vector<std::unique_ptr<PredicateCall>> calls;
  bool asksForPath = false;
};

constexpr int kFirstParameter = 5;
inline constexpr const char* kPredicateFunction = "holds";

/// What SQL can say as SQL, and the rest as calls.
[[nodiscard]] SqlCondition sqlCondition(const predicate::Predicate& predicate);
/// One call for all, for what is too deep or too long for SQLite.
[[nodiscard]] SqlCondition sqlConditionByOneCall(const predicate::Predicate& predicate);

}  // namespace pelmora::platform
