#pragma once

#include "shared/ReferenceTime.h"

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace pelmora::platform::predicate {

/// How deep a predicate may be, itself counted: compounds, then expressions, then arrays.
constexpr int kMaxDepth = 64;
/// How many predicates, expressions and elements of arrays it may have.
constexpr int kMaxNodes = 10'000;

class Constant;
using Array = std::vector<Constant>;

/// A value that is written in a predicate, or that an attribute of a file has; null says that there
/// is none. Strings are UTF-8. Thread: a plain value.
class Constant {
 public:
  using Storage =
      std::variant<std::monostate, bool, std::int64_t, double, ReferenceTime, std::string, Array>;

  Constant() = default;
  Constant(bool value) : _storage(value) {}
  Constant(int value) : _storage(static_cast<std::int64_t>(value)) {}
  Constant(std::int64_t value) : _storage(value) {}
  Constant(double value) : _storage(value) {}
  Constant(ReferenceTime value) : _storage(value) {}
  Constant(const char* value) : _storage(std::string(value)) {}
  Constant(std::string value) : _storage(std::move(value)) {}
  Constant(Array value) : _storage(std::move(value)) {}

  /// The value as a T, or nullptr when it is something else.
  template <typename T>
  [[nodiscard]] const T* get() const {
    return std::get_if<T>(&_storage);
  }
  [[nodiscard]] const Storage& storage() const { return _storage; }
  [[nodiscard]] bool isNull() const { return _storage.index() == 0; }

  /// The same value of the same type: 1 is not 1.0.
  bool operator==(const Constant&) const = default;

 private:
  Storage _storage;
};

/// Values in braces, as an archive tells them apart from one that is an array.
struct Aggregate {
  Constant array;
  bool operator==(const Aggregate&) const = default;
};
/// The attribute of that name. Names may have dots; the whole is one name.
struct KeyPath {
  std::string path;
  bool operator==(const KeyPath&) const = default;
};
/// The file itself.
struct EvaluatedObject {
  bool operator==(const EvaluatedObject&) const = default;
};
/// An expression that is not understood, by the platform's number.
struct UnknownExpression {
  std::uint32_t type = 0;
  bool operator==(const UnknownExpression&) const = default;
};
using Expression = std::variant<Constant, Aggregate, KeyPath, EvaluatedObject, UnknownExpression>;

/// The platform's number of the expression's kind.
[[nodiscard]] std::uint32_t expressionType(const Expression& expression);
/// What it is for every file, or nullptr.
[[nodiscard]] const Constant* constantValue(const Expression& expression);

/// The platform's numbers; there may be others.
enum class Operator : std::uint32_t {
  lessThan = 0,
  lessThanOrEqual = 1,
  greaterThan = 2,
  greaterThanOrEqual = 3,
  equal = 4,
  notEqual = 5,
  matches = 6,
  like = 7,
  beginsWith = 8,
  endsWith = 9,
  in = 10,
  customSelector = 11,
  contains = 99,
  between = 100
};

/// Of the values on the left: the one that there is, all, or any.
enum class Modifier : std::uint8_t { direct = 0, all = 1, any = 2 };

/// Options of a comparison, to be added up.
constexpr unsigned kCaseInsensitive = 1;
constexpr unsigned kDiacriticInsensitive = 2;
constexpr unsigned kAllOptions = kCaseInsensitive | kDiacriticInsensitive;

struct Comparison {
  Expression left;
  Operator type = Operator::equal;
  Expression right;
  Modifier modifier = Modifier::direct;
  unsigned options = 0;
  bool operator==(const Comparison&) const = default;
};

/// Holds always, or never.
struct Fixed {
  bool value = true;
  bool operator==(const Fixed&) const = default;
};

enum class CompoundType : std::uint8_t { negation = 0, conjunction = 1, disjunction = 2 };

class Predicate;

/// A negation has one subpredicate; the others have any number.
struct Compound {
  CompoundType type = CompoundType::conjunction;
  std::vector<Predicate> subpredicates;
  bool operator==(const Compound&) const;
};

/// What has to hold of a file. Functions that take one count on its limits, which what is read
/// keeps. Thread: a plain value.
class Predicate {
 public:
  using Storage = std::variant<Fixed, Comparison, Compound>;

  Predicate() = default;
  Predicate(Fixed fixed) : _storage(fixed) {}
  Predicate(Comparison comparison) : _storage(std::move(comparison)) {}
  Predicate(Compound compound) : _storage(std::move(compound)) {}

  /// The predicate as a T, or nullptr when it is something else.
  template <typename T>
  [[nodiscard]] const T* get() const {
    return std::get_if<T>(&_storage);
  }
  [[nodiscard]] const Storage& storage() const { return _storage; }

  bool operator==(const Predicate&) const = default;

 private:
  Storage _storage;
};

/// Whether the predicate keeps `kMaxDepth` and `kMaxNodes`.
[[nodiscard]] bool isWithinLimits(const Predicate& predicate);

}  // namespace pelmora::platform::predicate
