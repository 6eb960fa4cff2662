#include "platform/predicate/Predicate.h"

#include <algorithm>

namespace pelmora::platform::predicate {

namespace {

/// Counts a tree's nodes, and stops where a limit is passed.
class Census {
 public:
  bool predicate(const Predicate& predicate, int depth) {
    if (!enter(depth)) return false;
    if (const auto* comparison = predicate.get<Comparison>()) {
      return expression(comparison->left, depth + 1) && expression(comparison->right, depth + 1);
    }
    const auto* compound = predicate.get<Compound>();
    return !compound ||
           std::all_of(compound->subpredicates.begin(), compound->subpredicates.end(),
                       [&](const Predicate& part) { return this->predicate(part, depth + 1); });
  }

 private:
  bool expression(const Expression& expression, int depth) {
    const Constant* const value = constantValue(expression);
    return value ? constant(*value, depth) : enter(depth);
  }
  bool constant(const Constant& constant, int depth) {
    if (!enter(depth)) return false;
    const auto* array = constant.get<Array>();
    return !array || std::all_of(array->begin(), array->end(), [&](const Constant& element) {
      return this->constant(element, depth + 1);
    });
  }
  bool enter(int depth) { return depth <= kMaxDepth && ++_nodes <= kMaxNodes; }

  int _nodes = 0;
};

}  // namespace

// Written out, as clang 14 does not survive the default of a type that contains itself.
bool Compound::operator==(const Compound& other) const {
  return type == other.type && subpredicates == other.subpredicates;
}

std::uint32_t expressionType(const Expression& expression) {
  if (const auto* unknown = std::get_if<UnknownExpression>(&expression)) return unknown->type;
  if (std::get_if<Aggregate>(&expression)) return 14;
  if (std::get_if<EvaluatedObject>(&expression)) return 1;
  return std::get_if<KeyPath>(&expression) ? 3 : 0;
}

const Constant* constantValue(const Expression& expression) {
  const auto* aggregate = std::get_if<Aggregate>(&expression);
  return aggregate ? &aggregate->array : std::get_if<Constant>(&expression);
}

bool isWithinLimits(const Predicate& predicate) { return Census().predicate(predicate, 1); }

}  // namespace pelmora::platform::predicate
