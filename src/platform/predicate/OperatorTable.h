#pragma once

#include "platform/predicate/Predicate.h"

#include <array>
#include <string_view>

namespace pelmora::platform::predicate {

/// How an operator is written, in texts and in archives.
struct OperatorEntry {
  Operator type;
  std::string_view symbol;
  std::string_view otherSymbol;  // the same when there is none
  const char* archiveClass;
  const char* optionsKey;
};

/// Every operator but the custom selector, which has no text.
inline constexpr std::array<OperatorEntry, 13> kOperators = {{
    {Operator::lessThan, "<", "<", "NSComparisonPredicateOperator", "NSOptions"},
    {Operator::lessThanOrEqual, "<=", "=<", "NSComparisonPredicateOperator", "NSOptions"},
    {Operator::greaterThan, ">", ">", "NSComparisonPredicateOperator", "NSOptions"},
    {Operator::greaterThanOrEqual, ">=", "=>", "NSComparisonPredicateOperator", "NSOptions"},
    {Operator::equal, "==", "=", "NSEqualityPredicateOperator", "NSOptions"},
    {Operator::notEqual, "!=", "<>", "NSEqualityPredicateOperator", "NSOptions"},
    {Operator::matches, "MATCHES", "MATCHES", "NSMatchingPredicateOperator", "NSFlags"},
    {Operator::like, "LIKE", "LIKE", "NSLikePredicateOperator", "NSFlags"},
    {Operator::beginsWith, "BEGINSWITH", "BEGINSWITH", "NSSubstringPredicateOperator", "NSFlags"},
    {Operator::endsWith, "ENDSWITH", "ENDSWITH", "NSSubstringPredicateOperator", "NSFlags"},
    {Operator::in, "IN", "IN", "NSInPredicateOperator", "NSFlags"},
    {Operator::contains, "CONTAINS", "CONTAINS", "NSInPredicateOperator", "NSFlags"},
    {Operator::between, "BETWEEN", "BETWEEN", "NSBetweenPredicateOperator", "NSOptions"},
}};

/// nullptr for an operator that is not in the table.
[[nodiscard]] constexpr const OperatorEntry* entryOf(Operator type) {
  for (const OperatorEntry& entry : kOperators) {
    if (entry.type == type) return &entry;
  }
  return nullptr;
}

}  // namespace pelmora::platform::predicate
