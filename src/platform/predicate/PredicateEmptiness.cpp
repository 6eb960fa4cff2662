#include "platform/predicate/PredicateEmptiness.h"

#include <algorithm>

namespace pelmora::platform::predicate {

namespace {

const char* className(const Constant& constant) {
  if (constant.isNull()) return "NSNull";
  if (constant.get<ReferenceTime>()) return "NSDate";
  return constant.get<Array>() ? "NSArray" : "NSNumber";
}

bool isExpressionEmpty(const Expression& expression, Log& log) {
  const auto* constant = std::get_if<Constant>(&expression);
  if (!constant) {
    log.print("I need to handle expressionType %lu.",
              static_cast<unsigned long>(expressionType(expression)));
    return true;
  }
  if (const auto* text = constant->get<std::string>()) return text->empty();
  log.print("I need to handle constantValue of class %s.", className(*constant));
  return true;
}

bool isComparisonEmpty(const Comparison& comparison, Log& log) {
  switch (comparison.type) {
    case Operator::lessThan:
    case Operator::lessThanOrEqual:
    case Operator::greaterThan:
    case Operator::greaterThanOrEqual:
    case Operator::matches:
    case Operator::like:
    case Operator::in:
    case Operator::customSelector:
    case Operator::between:
      throw PredicateException(
          "NSComparisonPredicate(Walker)",
          "predicateOperatorType " + std::to_string(static_cast<std::uint32_t>(comparison.type)) +
              " not handled, because there wasn't originally a menu item to choose it.");
    case Operator::equal:
    case Operator::notEqual:
    case Operator::beginsWith:
    case Operator::endsWith:
    case Operator::contains:
      return isExpressionEmpty(comparison.right, log);
  }
  return true;
}

}  // namespace

bool isEmpty(const Predicate& predicate, Log& log) {
  if (const auto* comparison = predicate.get<Comparison>()) {
    return isComparisonEmpty(*comparison, log);
  }
  if (const auto* compound = predicate.get<Compound>()) {
    return std::all_of(compound->subpredicates.begin(), compound->subpredicates.end(),
                       [&log](const Predicate& part) { return isEmpty(part, log); });
  }
  throw PredicateException("NSPredicate(Walker)",
                           "NSPredicate base class should never handle isEmpty.");
}

}  // namespace pelmora::platform::predicate
