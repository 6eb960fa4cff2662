#include "platform/ArchiveObjects.h"
#include "platform/BinaryPropertyList.h"
#include "platform/predicate/OperatorTable.h"
#include "platform/predicate/PredicateArchive.h"
#include "platform/ReadingBudget.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace pelmora::platform::predicate {

namespace {

using plist::ArchiveObjects;
using plist::ObjectType;
using plist::ObjectView;

/// The platform's number of an array of expressions.
constexpr std::uint32_t kAggregateType = 14;

/// The platform's expressions that are not understood.
constexpr std::array<std::string_view, 11> kOtherExpressions = {
    "NSVariableExpression", "NSFunctionExpression",        "NSSetExpression",
    "NSSubqueryExpression", "NSAggregateExpression",       "NSAnyKeyExpression",
    "NSBlockExpression",    "NSTernaryExpression",         "NSVariableAssignmentExpression",
    "NSSymbolicExpression", "NSKeyPathSpecifierExpression"};

/// Whether operators of the type are of the class; those of types that are not known may be of any.
bool isOperatorClass(std::string_view name, Operator type) {
  const OperatorEntry* const entry = entryOf(type);
  if (!entry) return name.ends_with("PredicateOperator");
  return name == entry->archiveClass ||
         (type == Operator::contains && name == "NSSubstringPredicateOperator");
}

class Reader {
 public:
  Reader(const ArchiveObjects& objects, std::size_t inputSize)
      : _objects(objects), _budget(inputSize), _open(objects.size(), false) {}

  std::optional<Predicate> predicate(std::uint32_t number, int depth);
  [[nodiscard]] const char* problem() const {
    return _problem ? _problem : "the predicate is damaged";
  }

 private:
  /// An object that is being read, which must not be reached from itself.
  class Visit {
   public:
    Visit(Reader& reader, std::uint32_t number, int depth);
    ~Visit();
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    explicit operator bool() const { return _object.has_value(); }
    [[nodiscard]] const ObjectView& object() const { return *_object; }

   private:
    Reader& _reader;
    std::uint32_t _number;
    std::optional<ObjectView> _object;
  };

  std::optional<Predicate> comparison(const ObjectView& object, int depth);
  std::optional<Predicate> compound(const ObjectView& object, int depth);
  bool readOperator(const ObjectView& object, Comparison& comparison);
  std::optional<Expression> expressionIn(const ObjectView& holder, const char* field, int depth);
  std::optional<Expression> expressionAt(std::uint32_t number, int depth);
  std::optional<Expression> expression(const ObjectView& object, int depth);
  std::optional<Expression> aggregate(const ObjectView& object, int depth);
  std::optional<Expression> keyPath(const ObjectView& object);
  std::optional<Constant> constantIn(const ObjectView& holder, const char* field, int depth);
  std::optional<Constant> constant(std::uint32_t number, int depth);
  std::optional<Constant> scalar(const ObjectView& object);
  std::optional<Constant> instance(const ObjectView& object, int depth);
  std::optional<Constant> array(const ObjectView& object, int depth);

  std::optional<std::int64_t> integer(const ObjectView& object, const char* field);
  std::optional<std::string> text(const ObjectView& object, const char* field);
  std::optional<std::uint32_t> reference(const ObjectView& object, const char* field);
  std::optional<ObjectView> elements(const ObjectView& object);
  std::nullopt_t fail(const char* problem) {
    if (!_problem) _problem = problem;
    return std::nullopt;
  }

  const ArchiveObjects& _objects;
  plist::ReadingBudget _budget;
  std::vector<bool> _open;
  int _nodes = 0;
  const char* _problem = nullptr;
};

Reader::Visit::Visit(Reader& reader, std::uint32_t number, int depth)
    : _reader(reader), _number(number) {
  const std::optional<ObjectView> object = reader._objects.object(number);
  if (!object) {
    reader.fail("an object of the predicate is missing or damaged");
  } else if (depth > kMaxDepth) {
    reader.fail("the predicate is too deep");
  } else if (++reader._nodes > kMaxNodes) {
    reader.fail("the predicate is too large");
  } else if (reader._open[number]) {
    reader.fail("the predicate contains itself");
  } else {
    _object = object;
    reader._open[number] = true;
  }
}

Reader::Visit::~Visit() {
  if (_object) _reader._open[_number] = false;
}

std::optional<Predicate> Reader::predicate(std::uint32_t number, int depth) {
  const Visit visit(*this, number, depth);
  if (!visit) return std::nullopt;
  const std::string_view name = _objects.className(visit.object());
  if (name == "NSComparisonPredicate") return comparison(visit.object(), depth);
  if (name == "NSCompoundPredicate") return compound(visit.object(), depth);
  if (name == "NSTruePredicate") return Predicate(Fixed{true});
  if (name == "NSFalsePredicate") return Predicate(Fixed{false});
  return fail("the archive holds no predicate, or one of a class that is not known");
}

std::optional<Predicate> Reader::comparison(const ObjectView& object, int depth) {
  Comparison comparison;
  std::optional<Expression> left = expressionIn(object, "NSLeftExpression", depth + 1);
  if (!left) return std::nullopt;
  std::optional<Expression> right = expressionIn(object, "NSRightExpression", depth + 1);
  if (!right) return std::nullopt;
  const auto itsOperator = _objects.resolvedField(object, "NSPredicateOperator");
  if (!itsOperator) return fail("a comparison of the predicate has no operator");
  if (!readOperator(*itsOperator, comparison)) return std::nullopt;
  comparison.left = std::move(*left);
  comparison.right = std::move(*right);
  return Predicate(std::move(comparison));
}

std::optional<Predicate> Reader::compound(const ObjectView& object, int depth) {
  const std::optional<std::int64_t> type = integer(object, "NSCompoundPredicateType");
  if (!type) return std::nullopt;
  if (*type < 0 || *type > 2) return fail("a compound of the predicate is of no known type");
  const std::optional<ObjectView> list = _objects.resolvedField(object, "NSSubpredicates");
  const std::optional<ObjectView> parts = list ? elements(*list) : std::nullopt;
  if (!parts) return fail("a compound of the predicate has no list of predicates");
  Compound compound{static_cast<CompoundType>(*type), {}};
  for (std::uint64_t i = 0; i < parts->count; ++i) {
    const std::optional<std::uint32_t> number = _objects.number(*parts, i);
    if (!number) return fail("a reference of the predicate is damaged");
    std::optional<Predicate> part = predicate(*number, depth + 1);
    if (!part) return std::nullopt;
    compound.subpredicates.push_back(std::move(*part));
  }
  if (compound.type == CompoundType::negation && compound.subpredicates.size() != 1) {
    return fail("a negation of the predicate is not of one predicate");
  }
  return Predicate(std::move(compound));
}

bool Reader::readOperator(const ObjectView& object, Comparison& comparison) {
  const std::optional<std::int64_t> type = integer(object, "NSOperatorType");
  const std::optional<std::int64_t> modifier = integer(object, "NSModifier");
  const std::optional<std::int64_t> options = integer(object, "NSOptions");
  const std::optional<std::int64_t> flags = integer(object, "NSFlags");
  if (!type || !modifier || !options || !flags) return false;
  const bool isNumber = *type >= 0 && *type <= std::numeric_limits<std::uint32_t>::max();
  comparison.type = isNumber ? static_cast<Operator>(*type) : Operator::equal;
  if (!isNumber || !isOperatorClass(_objects.className(object), comparison.type)) {
    fail("an operator of the predicate is not known");
  } else if (*modifier < 0 || *modifier > 2) {
    fail("a modifier of the predicate is not known");
  } else if ((*options | *flags) < 0 || (*options | *flags) > std::int64_t{kAllOptions}) {
    fail("an option of the predicate is not known");
  } else {
    comparison.modifier = static_cast<Modifier>(*modifier);
    comparison.options = static_cast<unsigned>(*options | *flags);
    return true;
  }
  return false;
}

std::optional<Expression> Reader::expressionIn(const ObjectView& holder, const char* field,
                                               int depth) {
  const std::optional<std::uint32_t> number = reference(holder, field);
  if (!number) return fail("a comparison of the predicate lacks a side");
  return expressionAt(*number, depth);
}

std::optional<Expression> Reader::expressionAt(std::uint32_t number, int depth) {
  // A constant is one node together with its expression.
  const std::optional<ObjectView> object = _objects.object(number);
  const bool isConstant = object && _objects.className(*object) == "NSConstantValueExpression";
  if (isConstant) return expression(*object, depth);
  const Visit visit(*this, number, depth);
  return visit ? expression(visit.object(), depth) : std::nullopt;
}

std::optional<Expression> Reader::expression(const ObjectView& object, int depth) {
  const std::optional<std::int64_t> type = integer(object, "NSExpressionType");
  if (!type) return std::nullopt;
  const std::string_view name = _objects.className(object);
  if (name == "NSConstantValueExpression" && *type == 0) {
    std::optional<Constant> value = constantIn(object, "NSConstantValue", depth);
    return value ? std::optional<Expression>(std::move(*value)) : std::nullopt;
  }
  if (name == "NSKeyPathExpression" && *type == 3) return keyPath(object);
  if (name == "NSSelfExpression" && *type == 1) return Expression(EvaluatedObject{});
  if (name == "NSAggregateExpression" && *type == kAggregateType) return aggregate(object, depth);
  const bool isOther = *type > 3 || *type == 2;
  for (const std::string_view other : kOtherExpressions) {
    if (name == other && isOther && *type <= 1000) {
      return Expression(UnknownExpression{static_cast<std::uint32_t>(*type)});
    }
  }
  return fail("an expression of the predicate is not known");
}

/// Understood where there are nothing but constants in it.
std::optional<Expression> Reader::aggregate(const ObjectView& object, int depth) {
  const Expression unknown = UnknownExpression{kAggregateType};
  const std::optional<ObjectView> list = _objects.resolvedField(object, "NSCollection");
  const std::optional<ObjectView> parts = list ? elements(*list) : std::nullopt;
  if (!parts) return unknown;
  Array read;
  for (std::uint64_t i = 0; i < parts->count; ++i) {
    const std::optional<std::uint32_t> number = _objects.number(*parts, i);
    const std::optional<ObjectView> part = number ? _objects.object(*number) : std::nullopt;
    if (!part) return fail("a reference of the predicate is damaged");
    const std::string_view name = _objects.className(*part);
    if (name != "NSConstantValueExpression" && name != "NSAggregateExpression") return unknown;
    std::optional<Expression> element = expressionAt(*number, depth + 1);
    if (!element) return std::nullopt;
    const Constant* const constant = constantValue(*element);
    if (!constant) return unknown;
    read.push_back(*constant);
  }
  return Expression(Aggregate{std::move(read)});
}

std::optional<Expression> Reader::keyPath(const ObjectView& object) {
  const std::optional<ObjectView> operand = _objects.resolvedField(object, "NSOperand");
  const std::optional<std::string> selector = text(object, "NSSelectorName");
  const std::optional<ObjectView> list = _objects.resolvedField(object, "NSArguments");
  const std::optional<ObjectView> arguments = list ? elements(*list) : std::nullopt;
  const bool isOfSelf = operand && _objects.className(*operand) == "NSSelfExpression";
  const bool isValue = selector == "valueForKey:" || selector == "valueForKeyPath:";
  if (!isOfSelf || !isValue || !arguments || arguments->count != 1) {
    return fail("a key path of the predicate is damaged");
  }
  const std::optional<std::uint32_t> number = _objects.number(*arguments, 0);
  const std::optional<ObjectView> argument = number ? _objects.object(*number) : std::nullopt;
  const std::string_view name = argument ? _objects.className(*argument) : std::string_view();
  std::optional<std::string> path;
  if (name == "NSKeyPathSpecifierExpression") path = text(*argument, "NSKeyPath");
  if (name == "NSConstantValueExpression") path = text(*argument, "NSConstantValue");
  if (!path || path->empty()) return fail("a key path of the predicate has no name");
  return Expression(KeyPath{std::move(*path)});
}

std::optional<Constant> Reader::constantIn(const ObjectView& holder, const char* field, int depth) {
  const std::optional<std::uint32_t> number = reference(holder, field);
  if (!number) return fail("a constant of the predicate has no value");
  return constant(*number, depth);
}

std::optional<Constant> Reader::constant(std::uint32_t number, int depth) {
  const Visit visit(*this, number, depth);
  if (!visit) return std::nullopt;
  if (!_budget.spend(plist::ReadingBudget::kValueCost)) return fail("the predicate is too large");
  if (number == ArchiveObjects::kNull) return Constant();
  if (visit.object().type == ObjectType::dictionary) return instance(visit.object(), depth);
  return scalar(visit.object());
}

std::optional<Constant> Reader::scalar(const ObjectView& object) {
  if (!_budget.spend(object.count)) return fail("the predicate is too large");
  const std::optional<plist::Value> value = plist::scalarValue(object);
  if (!value) return fail("a value of the predicate is damaged");
  if (const auto* string = value->get<std::string>()) return Constant(*string);
  if (const auto* truth = value->get<bool>()) return Constant(*truth);
  if (const auto* integer = value->get<std::int64_t>()) return Constant(*integer);
  const auto* real = value->get<double>();
  if (!real || !std::isfinite(*real)) return fail("a value of the predicate is of no known kind");
  return Constant(*real);
}

std::optional<Constant> Reader::instance(const ObjectView& object, int depth) {
  const std::string_view name = _objects.className(object);
  if (plist::isArrayClass(name)) return array(object, depth);
  if (name == "NSNull") return Constant();
  if (plist::isStringClass(name)) {
    std::optional<std::string> string = text(object, "NS.string");
    return string ? std::optional<Constant>(std::move(*string)) : std::nullopt;
  }
  if (name == "NSDate") {
    const std::optional<ObjectView> time = _objects.resolvedField(object, "NS.time");
    const std::optional<Constant> seconds = time ? scalar(*time) : std::nullopt;
    const auto* real = seconds ? seconds->get<double>() : nullptr;
    const auto* whole = seconds ? seconds->get<std::int64_t>() : nullptr;
    if (!real && !whole) return fail("a date of the predicate is none");
    return Constant(ReferenceTime{real ? *real : static_cast<double>(*whole)});
  }
  return fail("a value of the predicate is of a class that is not allowed");
}

std::optional<Constant> Reader::array(const ObjectView& object, int depth) {
  const std::optional<ObjectView> numbers = elements(object);
  if (!numbers) return fail("an array of the predicate lacks its elements");
  Array read;
  for (std::uint64_t i = 0; i < numbers->count; ++i) {
    const std::optional<std::uint32_t> number = _objects.number(*numbers, i);
    if (!number) return fail("a reference of the predicate is damaged");
    std::optional<Constant> element = constant(*number, depth + 1);
    if (!element) return std::nullopt;
    read.push_back(std::move(*element));
  }
  return Constant(std::move(read));
}

/// The integer in a field; 0 when there is no such field, as the platform reads it.
std::optional<std::int64_t> Reader::integer(const ObjectView& object, const char* field) {
  const std::optional<ObjectView> content = _objects.resolvedField(object, field);
  if (!content) {
    if (_objects.field(object, field)) return fail("a reference of the predicate is damaged");
    return 0;
  }
  const std::optional<std::int64_t> value = plist::BinaryObjects::integer(*content);
  if (!value) return fail("a number of the predicate is of another type");
  return value;
}

std::optional<std::string> Reader::text(const ObjectView& object, const char* field) {
  const std::optional<ObjectView> content = _objects.resolvedField(object, field);
  if (!content) return fail("a text of the predicate is missing");
  if (!_budget.spend(content->count)) return fail("the predicate is too large");
  std::optional<std::string> text = plist::BinaryObjects::text(*content);
  if (!text) return fail("a text of the predicate is of another type");
  return text;
}

std::optional<std::uint32_t> Reader::reference(const ObjectView& object, const char* field) {
  const std::optional<ObjectView> content = _objects.field(object, field);
  return content ? plist::BinaryObjects::uid(*content) : std::nullopt;
}

std::optional<ObjectView> Reader::elements(const ObjectView& object) {
  if (!plist::isArrayClass(_objects.className(object))) return std::nullopt;
  return _objects.numbers(object, "NS.objects");
}

}  // namespace

Result<Predicate> readPredicateArchive(std::span<const std::uint8_t> bytes) {
  const Result<ArchiveObjects> objects = ArchiveObjects::open(bytes);
  if (!objects) return objects.error();
  Reader reader(*objects, bytes.size());
  std::optional<Predicate> predicate = reader.predicate(objects->root(), 1);
  if (!predicate) return Error{reader.problem()};
  return std::move(*predicate);
}

}  // namespace pelmora::platform::predicate
