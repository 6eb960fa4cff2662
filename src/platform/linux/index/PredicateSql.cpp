#include "platform/linux/index/PredicateSql.h"

#include "platform/linux/index/StoreSchema.h"
#include "platform/predicate/FoldedPattern.h"
#include "platform/predicate/PredicateEvaluation.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace pelmora::platform {

namespace {

using metadata::Attribute;
using metadata::attributeNamed;
using metadata::attributeTable;
using metadata::ValueType;
using predicate::Array;
using predicate::Comparison;
using predicate::Compound;
using predicate::CompoundType;
using predicate::Constant;
using predicate::Expression;
using predicate::Fixed;
using predicate::KeyPath;
using predicate::Modifier;
using predicate::Operator;
using predicate::Predicate;

std::optional<std::size_t> attributeOf(const Expression& expression) {
  const auto* path = std::get_if<KeyPath>(&expression);
  return path ? attributeNamed(path->path) : std::nullopt;
}

/// Each once, in the order in which they come.
void collectAttributes(const Predicate& predicate, std::vector<std::size_t>& attributes) {
  if (const auto* comparison = predicate.get<Comparison>()) {
    for (const Expression* side : {&comparison->left, &comparison->right}) {
      const auto attribute = attributeOf(*side);
      if (!attribute) continue;
      if (std::find(attributes.begin(), attributes.end(), *attribute) == attributes.end()) {
        attributes.push_back(*attribute);
      }
    }
  } else if (const auto* compound = predicate.get<Compound>()) {
    for (const Predicate& part : compound->subpredicates) collectAttributes(part, attributes);
  }
}

/// Longer texts are evaluated rather than bound, as SQLite bounds what it takes.
constexpr std::size_t kLongestBound = 64 << 10;

bool isBindable(const Constant& constant) {
  const auto* text = constant.get<std::string>();
  return !text || text->size() <= kLongestBound;
}

/// How SQL writes the operator; nullptr for the others.
const char* symbolOf(Operator type) {
  switch (type) {
    case Operator::lessThan:
      return " < ";
    case Operator::lessThanOrEqual:
      return " <= ";
    case Operator::greaterThan:
      return " > ";
    case Operator::greaterThanOrEqual:
      return " >= ";
    case Operator::equal:
      return " IS ";
    case Operator::notEqual:  // which a missing value is
      return " IS NOT ";
    default:
      return nullptr;
  }
}

/// The number that a column of this type is compared with; nullopt for anything else.
std::optional<SqlCondition::Parameter> numberFor(ValueType type, const Constant& constant) {
  if (type == ValueType::date) {
    const auto* time = constant.get<ReferenceTime>();
    if (!time || std::isnan(time->seconds)) return std::nullopt;
    return time->seconds;
  }
  if (const auto* truth = constant.get<bool>()) return std::int64_t{*truth ? 1 : 0};
  if (const auto* integer = constant.get<std::int64_t>()) return *integer;
  const auto* real = constant.get<double>();
  if (!real || std::isnan(*real)) return std::nullopt;
  return *real;
}

Constant foldedConstant(const Constant& constant) {
  if (const auto* text = constant.get<std::string>()) return foldedForStore(*text);
  const auto* elements = constant.get<Array>();
  if (!elements) return constant;
  Array folded;
  for (const Constant& element : *elements) folded.push_back(foldedConstant(element));
  return folded;
}

Constant foldedPattern(const Constant& constant) {
  const auto* text = constant.get<std::string>();
  if (!text) return constant;
  return predicate::foldedLikeText(*text, {.ignoresCase = true, .ignoresDiacritics = true});
}

class ConditionWriter {
 public:
  void write(const Predicate& predicate) {
    if (const auto* fixed = predicate.get<Fixed>()) {
      put(fixed->value ? "1" : "0");
    } else if (const auto* compound = predicate.get<Compound>()) {
      writeCompound(*compound);
    } else {
      writeComparison(*predicate.get<Comparison>());
    }
  }

  void writeCall(const Predicate& predicate, TextForm form = TextForm::raw) {
    auto call = std::make_unique<PredicateCall>();
    call->predicate = predicate;
    collectAttributes(predicate, call->attributes);
    if (call->attributes.empty()) {
      // It is the same for every file.
      put(predicate::matches(predicate, predicate::MetadataMap({})) ? "1" : "0");
      return;
    }
    put(std::string(kPredicateFunction) + "(" + parameter(call.get()));
    for (const std::size_t attribute : call->attributes) put(", " + column(attribute, form));
    put(")");
    _condition.calls.push_back(std::move(call));
  }

  [[nodiscard]] SqlCondition take() { return std::move(_condition); }

 private:
  void put(const std::string& sql) { _condition.sql += sql; }

  std::string parameter(SqlCondition::Parameter value) {
    _condition.parameters.push_back(std::move(value));
    const std::size_t number = kFirstParameter - 1 + _condition.parameters.size();
    return "?" + std::to_string(number);
  }

  std::string column(std::size_t attribute, TextForm form) {
    if (isPath(attribute)) _condition.asksForPath = true;
    if (attributeTable()[attribute].type != ValueType::text) form = TextForm::raw;
    return expressionOf(attribute, form);
  }

  void writeCompound(const Compound& compound) {
    const bool isAnd = compound.type == CompoundType::conjunction;
    if (compound.type == CompoundType::negation) put("NOT ");
    put("(");
    if (compound.subpredicates.empty()) put(isAnd ? "1" : "0");
    bool isFirst = true;
    for (const Predicate& part : compound.subpredicates) {
      if (!isFirst) put(isAnd ? " AND " : " OR ");
      isFirst = false;
      write(part);
    }
    put(")");
  }

  void writeComparison(const Comparison& comparison) {
    const auto attribute = attributeOf(comparison.left);
    const Constant* const constant = predicate::constantValue(comparison.right);
    if (!attribute || !constant) return writeCall(comparison);
    if (constant->isNull()) return writeNullTest(*attribute, comparison.type);
    const Attribute& described = attributeTable()[*attribute];
    if (!isBindable(*constant)) return writeCall(comparison);
    if (described.type == ValueType::text) return writeTextTest(*attribute, comparison, *constant);
    const auto number = numberFor(described.type, *constant);
    const char* const symbol = symbolOf(comparison.type);
    if (!number || !symbol) return writeCall(comparison);
    put("ifnull(" + column(*attribute, TextForm::raw) + symbol + parameter(*number) + ", 0)");
  }

  void writeNullTest(std::size_t attribute, Operator type) {
    if (type != Operator::equal && type != Operator::notEqual) return put("0");
    put("(" + column(attribute, TextForm::raw) + symbolOf(type) + "NULL)");
  }

  /// With all options or none, the text is compared byte by byte, as it is or as it is folded.
  void writeTextTest(std::size_t attribute, Comparison comparison, const Constant& constant) {
    const unsigned options = comparison.options & predicate::kAllOptions;
    const bool isFolded = options == predicate::kAllOptions;
    // Expressions are folded in a way of their own.
    if (comparison.type == Operator::matches || (options != 0 && !isFolded)) {
      return writeCall(comparison);
    }
    const TextForm form = isFolded ? TextForm::folded : TextForm::raw;
    comparison.options = 0;
    if (comparison.type == Operator::like) {
      if (isFolded) comparison.right = foldedPattern(constant);
      return writeCall(comparison, form);
    }
    const Constant wanted = isFolded ? foldedConstant(constant) : constant;
    comparison.right = wanted;
    const auto* text = wanted.get<std::string>();
    const bool hasSeveral = attributeTable()[attribute].hasSeveral;
    if (!text || (hasSeveral && comparison.modifier == Modifier::all)) {
      return writeCall(comparison, form);
    }
    const std::string tested = column(attribute, form);
    const bool isWritten = hasSeveral ? writeAnyText(tested, comparison.type, *text)
                                      : writeOneText(tested, comparison.type, *text);
    if (!isWritten) writeCall(comparison, form);
  }

  bool writeOneText(const std::string& tested, Operator type, const std::string& text) {
    if (const char* const symbol = symbolOf(type)) {
      put("ifnull(" + tested + symbol + parameter(text) + ", 0)");
      return true;
    }
    if (type == Operator::contains) {
      put("ifnull(instr(" + tested + ", " + parameter(text) + "), 0)");
    } else if (type != Operator::beginsWith && type != Operator::endsWith) {
      return false;
    } else if (text.empty()) {
      put("(" + tested + " IS NOT NULL)");
    } else {
      const auto length = static_cast<std::int64_t>(text.size());
      put("(substr(" + tested + ", ");
      put(type == Operator::beginsWith ? "1, " + parameter(length) : parameter(-length));
      put(") IS " + parameter(text) + ")");
    }
    return true;
  }

  bool writeAnyText(const std::string& tested, Operator type, const std::string& text) {
    std::string wanted = text;
    if (type == Operator::equal || type == Operator::beginsWith) wanted.insert(0, 1, kBetween);
    if (type == Operator::equal || type == Operator::endsWith) wanted += kBetween;
    if (wanted.size() == text.size() && type != Operator::contains) return false;
    // No value holds what stands between values.
    if (text.find(kBetween) != std::string::npos) {
      put("0");
    } else {
      put("ifnull(instr(" + tested + ", " + parameter(wanted) + "), 0)");
    }
    return true;
  }

  SqlCondition _condition;
};

}  // namespace

SqlCondition sqlCondition(const Predicate& predicate) {
  ConditionWriter writer;
  writer.write(predicate);
  return writer.take();
}

SqlCondition sqlConditionByOneCall(const Predicate& predicate) {
  ConditionWriter writer;
  writer.writeCall(predicate);
  return writer.take();
}

}  // namespace pelmora::platform
