#include "platform/predicate/PredicateEvaluation.h"

#include "platform/predicate/TextComparison.h"

#include <algorithm>
#include <compare>
#include <optional>
#include <utility>

namespace pelmora::platform::predicate {

namespace {

/// Exactly, where the integer has no equal among the doubles.
std::partial_ordering order(std::int64_t integer, double real) {
  constexpr double kEnd = 9223372036854775808.0;  // 2^63
  if (real != real) return std::partial_ordering::unordered;
  if (real >= kEnd) return std::partial_ordering::less;
  if (real < -kEnd) return std::partial_ordering::greater;
  const auto whole = static_cast<std::int64_t>(real);
  if (integer != whole) return integer <=> whole;
  return 0.0 <=> real - static_cast<double>(whole);
}

std::optional<std::int64_t> integerOf(const Constant& constant) {
  if (const auto* truth = constant.get<bool>()) return *truth ? 1 : 0;
  const auto* integer = constant.get<std::int64_t>();
  return integer ? std::optional(*integer) : std::nullopt;
}

/// How two numbers or dates compare; unordered for anything else.
std::partial_ordering order(const Constant& left, const Constant& right) {
  const auto* leftTime = left.get<ReferenceTime>();
  const auto* rightTime = right.get<ReferenceTime>();
  if (leftTime && rightTime) return leftTime->seconds <=> rightTime->seconds;
  const std::optional<std::int64_t> leftInteger = integerOf(left);
  const std::optional<std::int64_t> rightInteger = integerOf(right);
  const auto* leftReal = left.get<double>();
  const auto* rightReal = right.get<double>();
  if (leftInteger && rightInteger) return *leftInteger <=> *rightInteger;
  if (leftReal && rightReal) return *leftReal <=> *rightReal;
  if (leftInteger && rightReal) return order(*leftInteger, *rightReal);
  if (leftReal && rightInteger) return 0 <=> order(*rightInteger, *leftReal);
  return std::partial_ordering::unordered;
}

bool isOrderedAs(Operator type, std::partial_ordering order) {
  switch (type) {
    case Operator::lessThan:
      return order < 0;
    case Operator::lessThanOrEqual:
      return order <= 0;
    case Operator::greaterThan:
      return order > 0;
    case Operator::greaterThanOrEqual:
      return order >= 0;
    case Operator::equal:
      return order == 0;
    case Operator::notEqual:
      return order < 0 || order > 0;
    default:
      return false;
  }
}

bool satisfies(Operator type, const Constant& left, const Constant& right, unsigned options);

bool isElement(const Constant& value, const Array& array, unsigned options) {
  return std::any_of(array.begin(), array.end(), [&](const Constant& element) {
    return satisfies(Operator::equal, value, element, options);
  });
}

bool isBetween(const Constant& value, const Constant& range, unsigned options) {
  const auto* ends = range.get<Array>();
  return ends && ends->size() == 2 &&
         satisfies(Operator::greaterThanOrEqual, value, (*ends)[0], options) &&
         satisfies(Operator::lessThanOrEqual, value, (*ends)[1], options);
}

bool areArraysEqual(const Array& left, const Array& right, unsigned options) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [options](const Constant& a, const Constant& b) {
                      return satisfies(Operator::equal, a, b, options);
                    });
}

/// Of two values that are there.
bool satisfies(Operator type, const Constant& left, const Constant& right, unsigned options) {
  if (type == Operator::between) return isBetween(left, right, options);
  const auto* leftText = left.get<std::string>();
  const auto* rightText = right.get<std::string>();
  if (leftText && rightText) return textSatisfies(type, *leftText, *rightText, options);
  const auto* leftArray = left.get<Array>();
  const auto* rightArray = right.get<Array>();
  if (type == Operator::in && rightArray) return isElement(left, *rightArray, options);
  if (type == Operator::contains && leftArray) return isElement(right, *leftArray, options);
  if (leftArray && rightArray) {
    const bool areEqual = areArraysEqual(*leftArray, *rightArray, options);
    return type == Operator::equal ? areEqual : type == Operator::notEqual && !areEqual;
  }
  if (left.isNull() && right.isNull()) return type == Operator::equal;
  return isOrderedAs(type, order(left, right));
}

/// The values of one side; nullopt for what has none by its nature.
std::optional<std::span<const Constant>> valuesOf(const Expression& expression,
                                                  const Metadata& metadata) {
  if (const Constant* const constant = constantValue(expression)) {
    // Null is no value, as what is missing has none.
    return std::span(constant, constant->isNull() ? 0u : 1u);
  }
  const auto* path = std::get_if<KeyPath>(&expression);
  if (!path) return std::nullopt;
  return metadata.values(path->path);
}

bool isNull(const Expression& expression) {
  const Constant* const constant = constantValue(expression);
  return constant && constant->isNull();
}

bool holds(const Comparison& comparison, const Metadata& metadata) {
  const auto left = valuesOf(comparison.left, metadata);
  const auto right = valuesOf(comparison.right, metadata);
  if (!left || !right) return false;
  if (isNull(comparison.left) || isNull(comparison.right)) {
    const bool isMissing = left->empty() && right->empty();
    return comparison.type == Operator::equal ? isMissing
                                              : comparison.type == Operator::notEqual && !isMissing;
  }
  if (left->empty() || right->empty()) return comparison.type == Operator::notEqual;
  const auto isSatisfied = [&](const Constant& value) {
    return std::any_of(right->begin(), right->end(), [&](const Constant& other) {
      return satisfies(comparison.type, value, other, comparison.options);
    });
  };
  if (comparison.modifier == Modifier::all) {
    return std::all_of(left->begin(), left->end(), isSatisfied);
  }
  return std::any_of(left->begin(), left->end(), isSatisfied);
}

bool holds(const Compound& compound, const Metadata& metadata) {
  const auto begin = compound.subpredicates.begin();
  const auto end = compound.subpredicates.end();
  const auto holdsPart = [&metadata](const Predicate& part) { return matches(part, metadata); };
  switch (compound.type) {
    case CompoundType::negation:
      return std::none_of(begin, end, holdsPart);
    case CompoundType::conjunction:
      return std::all_of(begin, end, holdsPart);
    case CompoundType::disjunction:
      return std::any_of(begin, end, holdsPart);
  }
  return false;
}

}  // namespace

std::span<const Constant> MetadataMap::values(std::string_view attribute) const {
  const auto found = _attributes.find(attribute);
  if (found == _attributes.end()) return {};
  return found->second;
}

bool matches(const Predicate& predicate, const Metadata& metadata) {
  if (const auto* comparison = predicate.get<Comparison>()) return holds(*comparison, metadata);
  if (const auto* compound = predicate.get<Compound>()) return holds(*compound, metadata);
  return predicate.get<Fixed>()->value;
}

}  // namespace pelmora::platform::predicate
