#include "platform/linux/index/tests/RandomPredicates.h"

#include <cmath>
#include <limits>

namespace pelmora::platform {

namespace {

using metadata::attributeTable;
using metadata::ValueType;
using predicate::Array;
using predicate::Comparison;
using predicate::Compound;
using predicate::CompoundType;
using predicate::Constant;
using predicate::Operator;

constexpr std::int64_t kExact = 1LL << 53;  // the next one is no double

const std::vector<std::string>& texts() {
  static const std::vector<std::string> texts = {"",
                                                 "a",
                                                 "b",
                                                 "ab",
                                                 "aB",
                                                 "beach",
                                                 "Beach",
                                                 "The Beach at 9",
                                                 "Été",
                                                 "e\u0301te\u0301",
                                                 "ete",
                                                 "Straße",
                                                 "STRASSE",
                                                 "ﬁn",
                                                 "fin",
                                                 "İ",
                                                 "i",
                                                 "東京",
                                                 "\u0301",
                                                 "a\u0301",
                                                 "100%",
                                                 "it's",
                                                 "＊",
                                                 "*",
                                                 "ÀB",
                                                 "ab\u0327\u0301",
                                                 "ab\u0301\u0327"};
  return texts;
}

/// What no attribute has, but names and predicates may.
const std::vector<std::string>& oddTexts() {
  using namespace std::string_literals;
  static const std::vector<std::string> texts = {"\xFF",
                                                 "a\xC3",
                                                 "\xE2\x82",
                                                 "a\x1F"
                                                 "b",
                                                 "\x1F",
                                                 "\x1F"
                                                 "a",
                                                 "\xA9t",
                                                 "?",
                                                 "*a*",
                                                 "[ab].*"};
  return texts;
}

const std::vector<std::int64_t>& integers() {
  static const std::vector<std::int64_t> integers = {0,
                                                     1,
                                                     -1,
                                                     2,
                                                     640,
                                                     kExact,
                                                     kExact + 1,
                                                     std::numeric_limits<std::int64_t>::max(),
                                                     std::numeric_limits<std::int64_t>::min()};
  return integers;
}

const std::vector<double>& reals() {
  static const std::vector<double> reals = {0.0,
                                            -0.0,
                                            1.0,
                                            -1.0,
                                            0.5,
                                            640.0,
                                            640.5,
                                            1e300,
                                            -1e300,
                                            static_cast<double>(kExact),
                                            9223372036854775808.0,
                                            -9223372036854775808.0};
  return reals;
}

const std::vector<std::string>& attributes() {
  static const std::vector<std::string> attributes = {
      "kMDItemFSName",     "kMDItemDisplayName", "kMDItemPath",           "kMDItemCity",
      "kMDItemTitle",      "kMDItemKeywords",    "kMDItemUserTags",       "kMDItemPixelWidth",
      "kMDItemStarRating", "kMDItemFNumber",     "kMDItemFSCreationDate", "nosuch"};
  return attributes;
}

}  // namespace

std::vector<MetadataStore::Entry> RandomPredicates::files(std::size_t count) {
  std::vector<MetadataStore::Entry> files(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::string& name = below(3) == 0 ? oneOf(oddTexts()) : oneOf(texts());
    files[i].name = name + (below(2) == 0 ? "" : oneOf(texts())) + "#" + std::to_string(i);
    files[i].metadata = metadata();
  }
  return files;
}

metadata::FileMetadata RandomPredicates::metadata() {
  metadata::FileMetadata metadata;
  for (const std::string& name : attributes()) {
    const auto attribute = metadata::attributeNamed(name);
    if (!attribute || below(4) == 0) continue;
    std::vector<Constant> values;
    const int count = attributeTable()[*attribute].hasSeveral ? 1 + below(3) : 1;
    for (int i = 0; i < count; ++i) values.push_back(valueOf(attributeTable()[*attribute].type));
    metadata.set(*attribute, std::move(values));
  }
  return metadata;
}

Constant RandomPredicates::valueOf(ValueType type) {
  switch (type) {
    case ValueType::text:
      return oneOf(texts());
    case ValueType::integer:
      return oneOf(integers());
    case ValueType::real:
      return oneOf(reals());
    case ValueType::date:
      return ReferenceTime{oneOf(reals())};
  }
  return {};
}

Constant RandomPredicates::scalar() {
  switch (below(12)) {
    case 0:
      return {};
    case 1:
      return below(2) == 0;
    case 2:
    case 3:
      return oneOf(integers());
    case 4:
      return oneOf(reals());
    case 5:
      return ReferenceTime{oneOf(reals())};
    case 6:
      return below(2) == 0 ? Constant(std::nan("")) : Constant(ReferenceTime{std::nan("")});
    case 7:
      return oneOf(oddTexts());
    default:
      return oneOf(texts());
  }
}

Constant RandomPredicates::constant(int depth) {
  if (depth == 0 || below(5) > 0) return scalar();
  Array elements;
  for (int i = below(4); i > 0; --i) elements.push_back(constant(depth - 1));
  return elements;
}

predicate::Expression RandomPredicates::expression(bool isLeft) {
  const int kind = below(20);
  if (kind == 0) return predicate::EvaluatedObject{};
  if (kind == 1) return predicate::UnknownExpression{7};
  if ((kind < 16) == isLeft) return predicate::KeyPath{oneOf(attributes())};
  Constant value = constant(2);
  if (value.get<Array>() && below(2) == 0) return predicate::Aggregate{std::move(value)};
  return value;
}

predicate::Predicate RandomPredicates::comparison() {
  static const std::vector<Operator> operators = {
      Operator::lessThan, Operator::lessThanOrEqual, Operator::greaterThan,
      Operator::equal,    Operator::notEqual,        Operator::greaterThanOrEqual,
      Operator::equal,    Operator::notEqual,        Operator::matches,
      Operator::like,     Operator::beginsWith,      Operator::endsWith,
      Operator::in,       Operator::contains,        Operator::contains,
      Operator::between,  Operator::customSelector,  static_cast<Operator>(77)};
  Comparison comparison;
  comparison.left = expression(true);
  comparison.right = expression(false);
  comparison.type = oneOf(operators);
  comparison.modifier = static_cast<predicate::Modifier>(below(3));
  comparison.options = static_cast<unsigned>(below(4));
  return comparison;
}

predicate::Predicate RandomPredicates::predicate(int depth) {
  if (depth == 0 || below(4) == 0) {
    return below(20) == 0 ? predicate::Predicate(predicate::Fixed{below(2) == 0}) : comparison();
  }
  Compound compound;
  compound.type = static_cast<CompoundType>(below(3));
  const int count = compound.type == CompoundType::negation && below(4) > 0 ? 1 : below(4);
  for (int i = 0; i < count; ++i) compound.subpredicates.push_back(predicate(depth - 1));
  return compound;
}

}  // namespace pelmora::platform
