#include "platform/predicate/OperatorTable.h"
#include "platform/predicate/PredicateArchive.h"
#include "platform/UnicodeText.h"

#include <cmath>
#include <initializer_list>
#include <optional>
#include <unordered_map>

namespace pelmora::platform::predicate {

namespace {

using plist::Dictionary;
using plist::Uid;

/// Fills the table of an archive's objects. The first problem met is kept, and the rest then is of
/// no use.
class Writer {
 public:
  Writer() { _objects.emplace_back("$null"); }

  Result<plist::Bytes> archive(const Predicate& predicate);

 private:
  using Classes = std::initializer_list<const char*>;

  Uid add(const Predicate& predicate);
  Uid add(const Comparison& comparison);
  Uid add(const Compound& compound);
  Uid add(const Expression& expression);
  Uid add(const Constant& constant);
  Uid operatorOf(const Comparison& comparison);
  Uid constant(const Constant& constant);
  Uid aggregate(const Aggregate& aggregate);
  Uid keyPath(const std::string& path);
  Uid evaluatedObject();
  Uid array(plist::Array elements);
  Uid text(const std::string& text);
  Uid real(double value, const char* dateField);

  Uid append(plist::Value object) {
    _objects.push_back(std::move(object));
    return Uid{static_cast<std::uint32_t>(_objects.size() - 1)};
  }
  Uid instance(Dictionary fields, Classes classes);
  Uid instanceAt(Uid place, Dictionary fields, Classes classes);
  Uid classEntry(Classes classes);
  Uid fail(const char* problem) {
    if (!_problem) _problem = problem;
    return Uid{0};
  }

  plist::Array _objects;
  std::unordered_map<std::string, Uid> _texts;
  std::unordered_map<std::string, Uid> _keyPaths;
  std::unordered_map<std::string, Uid> _classes;
  std::optional<Uid> _evaluatedObject;
  std::optional<Uid> _true;
  std::optional<Uid> _false;
  const char* _problem = nullptr;
};

Result<plist::Bytes> Writer::archive(const Predicate& predicate) {
  const Uid root = add(predicate);
  if (_problem) return Error{_problem};
  return plist::writeBinary(Dictionary{{"$archiver", "NSKeyedArchiver"},
                                       {"$objects", std::move(_objects)},
                                       {"$top", Dictionary{{"root", root}}},
                                       {"$version", 100000}});
}

Uid Writer::add(const Predicate& predicate) {
  if (const auto* comparison = predicate.get<Comparison>()) return add(*comparison);
  if (const auto* compound = predicate.get<Compound>()) return add(*compound);
  const bool value = predicate.get<Fixed>()->value;
  std::optional<Uid>& known = value ? _true : _false;
  if (!known) {
    known =
        instance({}, {value ? "NSTruePredicate" : "NSFalsePredicate", "NSPredicate", "NSObject"});
  }
  return *known;
}

// What holds others takes its number before they do, so that the root is the first object.
Uid Writer::add(const Comparison& comparison) {
  const Uid place = append({});
  const Uid left = add(comparison.left);
  const Uid right = add(comparison.right);
  return instanceAt(place,
                    {{"NSLeftExpression", left},
                     {"NSRightExpression", right},
                     {"NSPredicateOperator", operatorOf(comparison)}},
                    {"NSComparisonPredicate", "NSPredicate", "NSObject"});
}

Uid Writer::add(const Compound& compound) {
  const bool isNegation = compound.type == CompoundType::negation;
  if (isNegation && compound.subpredicates.size() != 1) {
    return fail("a negation is of one predicate");
  }
  const Uid place = append({});
  plist::Array parts;
  for (const Predicate& part : compound.subpredicates) parts.emplace_back(add(part));
  return instanceAt(place,
                    {{"NSCompoundPredicateType", static_cast<int>(compound.type)},
                     {"NSSubpredicates", array(std::move(parts))}},
                    {"NSCompoundPredicate", "NSPredicate", "NSObject"});
}

Uid Writer::operatorOf(const Comparison& comparison) {
  const OperatorEntry* const entry = entryOf(comparison.type);
  if (!entry) return fail("the predicate has an operator that no archive holds");
  if (comparison.options > kAllOptions) return fail("the predicate has unknown options");
  Dictionary fields = {{"NSOperatorType", static_cast<int>(comparison.type)},
                       {"NSModifier", static_cast<int>(comparison.modifier)},
                       {entry->optionsKey, static_cast<int>(comparison.options)}};
  switch (comparison.type) {
    case Operator::equal:
    case Operator::notEqual:
      fields.emplace("NSNegate", comparison.type == Operator::notEqual ? 1 : 0);
      break;
    case Operator::beginsWith:
    case Operator::endsWith:
      fields.emplace("NSPosition", comparison.type == Operator::endsWith ? 1 : 0);
      break;
    default:
      break;
  }
  const bool isOfText = std::string_view(entry->optionsKey) == "NSFlags" &&
                        comparison.type != Operator::in && comparison.type != Operator::contains;
  if (isOfText) {
    return instance(std::move(fields), {entry->archiveClass, "NSStringPredicateOperator",
                                        "NSPredicateOperator", "NSObject"});
  }
  return instance(std::move(fields), {entry->archiveClass, "NSPredicateOperator", "NSObject"});
}

Uid Writer::add(const Expression& expression) {
  if (const auto* path = std::get_if<KeyPath>(&expression)) return keyPath(path->path);
  if (std::get_if<EvaluatedObject>(&expression)) return evaluatedObject();
  if (const auto* braces = std::get_if<Aggregate>(&expression)) return aggregate(*braces);
  if (const auto* value = std::get_if<Constant>(&expression)) return constant(*value);
  return fail("the predicate has an expression that is not known");
}

Uid Writer::constant(const Constant& constant) {
  const Uid place = append({});
  return instanceAt(place, {{"NSExpressionType", 0}, {"NSConstantValue", add(constant)}},
                    {"NSConstantValueExpression", "NSExpression", "NSObject"});
}

Uid Writer::aggregate(const Aggregate& aggregate) {
  const auto* elements = aggregate.array.get<Array>();
  if (!elements) return fail("what is in braces is no array");
  const Uid place = append({});
  plist::Array numbers;
  for (const Constant& element : *elements) numbers.emplace_back(constant(element));
  return instanceAt(place, {{"NSExpressionType", 14}, {"NSCollection", array(std::move(numbers))}},
                    {"NSAggregateExpression", "NSExpression", "NSObject"});
}

Uid Writer::keyPath(const std::string& path) {
  if (path.empty()) return fail("a key path of the predicate has no name");
  if (const auto known = _keyPaths.find(path); known != _keyPaths.end()) return known->second;
  const Uid place = append({});
  const Uid specifier = instance({{"NSExpressionType", 10}, {"NSKeyPath", text(path)}},
                                 {"NSKeyPathSpecifierExpression", "NSExpression", "NSObject"});
  const bool isSimple = path.find('.') == std::string::npos;
  const Uid selector = text(isSimple ? "valueForKey:" : "valueForKeyPath:");
  instanceAt(place,
             {{"NSExpressionType", 3},
              {"NSOperand", evaluatedObject()},
              {"NSSelectorName", selector},
              {"NSArguments", array({specifier})}},
             {"NSKeyPathExpression", "NSFunctionExpression", "NSExpression", "NSObject"});
  return _keyPaths.emplace(path, place).first->second;
}

Uid Writer::evaluatedObject() {
  if (!_evaluatedObject) {
    _evaluatedObject =
        instance({{"NSExpressionType", 1}}, {"NSSelfExpression", "NSExpression", "NSObject"});
  }
  return *_evaluatedObject;
}

Uid Writer::add(const Constant& constant) {
  if (const auto* string = constant.get<std::string>()) return text(*string);
  if (const auto* truth = constant.get<bool>()) return append(*truth);
  if (const auto* integer = constant.get<std::int64_t>()) return append(*integer);
  if (const auto* number = constant.get<double>()) return real(*number, nullptr);
  if (const auto* time = constant.get<ReferenceTime>()) return real(time->seconds, "NS.time");
  const auto* elements = constant.get<Array>();
  if (!elements) return instance({}, {"NSNull", "NSObject"});
  plist::Array numbers;
  for (const Constant& element : *elements) numbers.emplace_back(add(element));
  return array(std::move(numbers));
}

/// A number, or a date of that many seconds.
Uid Writer::real(double value, const char* dateField) {
  if (!std::isfinite(value)) return fail("a number of the predicate is not finite");
  if (!dateField) return append(value);
  return instance({{dateField, value}}, {"NSDate", "NSObject"});
}

Uid Writer::array(plist::Array elements) {
  return instance({{"NS.objects", std::move(elements)}}, {"NSArray", "NSObject"});
}

Uid Writer::text(const std::string& text) {
  if (!plist::isUtf8(text)) return fail("a text of the predicate is not UTF-8");
  if (const auto known = _texts.find(text); known != _texts.end()) return known->second;
  return _texts.emplace(text, append(text)).first->second;
}

Uid Writer::instance(Dictionary fields, Classes classes) {
  return instanceAt(append({}), std::move(fields), classes);
}

Uid Writer::instanceAt(Uid place, Dictionary fields, Classes classes) {
  fields.emplace("$class", classEntry(classes));
  _objects[place.index] = std::move(fields);
  return place;
}

Uid Writer::classEntry(Classes classes) {
  const std::string name = *classes.begin();
  if (const auto known = _classes.find(name); known != _classes.end()) return known->second;
  const Uid entry = append(
      Dictionary{{"$classes", plist::Array(classes.begin(), classes.end())}, {"$classname", name}});
  return _classes.emplace(name, entry).first->second;
}

}  // namespace

Result<plist::Bytes> writePredicateArchive(const Predicate& predicate) {
  if (!isWithinLimits(predicate)) return Error{"the predicate is too deep or too large"};
  return Writer().archive(predicate);
}

}  // namespace pelmora::platform::predicate
