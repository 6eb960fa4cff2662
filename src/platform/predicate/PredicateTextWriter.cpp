#include "platform/predicate/OperatorTable.h"
#include "platform/predicate/PredicateScanner.h"
#include "platform/predicate/PredicateText.h"
#include "platform/predicate/ReservedWords.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace pelmora::platform::predicate {

namespace {

std::string quoted(std::string_view text) {
  constexpr std::string_view kEscaped = "\\\"\n\r\t";
  constexpr std::string_view kEscapes = "\\\"nrt";
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string result = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (const std::size_t i = kEscaped.find(c); i != std::string_view::npos) {
      result += '\\';
      result += kEscapes[i];
    } else if (byte < 0x20 || byte == 0x7F) {
      result += "\\u00";
      result += kDigits[byte >> 4];
      result += kDigits[byte & 0xF];
    } else {
      result += c;
    }
  }
  return result + '"';
}

/// The shortest text that reads back as the same real, and as a real.
std::string textOfReal(double value) {
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
  std::string text(buffer.data(), end);
  if (!std::isfinite(value)) return "<" + text + ">";
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

std::string textOfConstant(const Constant& constant);

std::string textOfArray(const Array& elements) {
  std::string text = "{";
  for (const Constant& element : elements) {
    if (text.size() > 1) text += ", ";
    text += textOfConstant(element);
  }
  return text + "}";
}

std::string textOfConstant(const Constant& constant) {
  if (const auto* truth = constant.get<bool>()) return *truth ? "TRUE" : "FALSE";
  if (const auto* integer = constant.get<std::int64_t>()) return std::to_string(*integer);
  if (const auto* real = constant.get<double>()) return textOfReal(*real);
  if (const auto* time = constant.get<ReferenceTime>()) {
    return "CAST(" + textOfReal(time->seconds) + ", \"NSDate\")";
  }
  if (const auto* text = constant.get<std::string>()) return quoted(*text);
  if (const auto* elements = constant.get<Array>()) return textOfArray(*elements);
  return "NULL";
}

/// Each name that is a word to anyone who reads the format is escaped.
std::string textOfKeyPath(std::string_view path) {
  if (!isPlainKeyPath(path)) return "<" + std::string(path) + ">";
  std::string text;
  for (;;) {
    const std::size_t end = std::min(path.find('.'), path.size());
    const std::string_view name = path.substr(0, end);
    if (isReservedWord(name) || isOneInAnyCase(name, kWordsOfOthers)) text += '#';
    text += name;
    if (end == path.size()) return text;
    text += '.';
    path.remove_prefix(end + 1);
  }
}

std::string textOfExpression(const Expression& expression) {
  if (const Constant* const constant = constantValue(expression)) return textOfConstant(*constant);
  if (const auto* path = std::get_if<KeyPath>(&expression)) return textOfKeyPath(path->path);
  if (std::get_if<EvaluatedObject>(&expression)) return "SELF";
  return "<expression of type " + std::to_string(expressionType(expression)) + ">";
}

std::string textOfOperator(const Comparison& comparison) {
  const OperatorEntry* const entry = entryOf(comparison.type);
  if (!entry) {
    return "<operator " + std::to_string(static_cast<std::uint32_t>(comparison.type)) + ">";
  }
  constexpr std::array<const char*, 4> kOptions = {"", "[c]", "[d]", "[cd]"};
  return std::string(entry->symbol) + kOptions[comparison.options & kAllOptions];
}

std::string textOfComparison(const Comparison& comparison) {
  constexpr std::array<const char*, 3> kModifiers = {"", "ALL ", "ANY "};
  return kModifiers[static_cast<std::size_t>(comparison.modifier)] +
         textOfExpression(comparison.left) + " " + textOfOperator(comparison) + " " +
         textOfExpression(comparison.right);
}

std::string textOfPart(const Predicate& predicate, bool isPart);

std::string textOfCompound(const Compound& compound, bool isPart) {
  const std::vector<Predicate>& parts = compound.subpredicates;
  const bool isNegation = compound.type == CompoundType::negation;
  if (isNegation && parts.size() == 1) return "NOT " + textOfPart(parts[0], true);
  const bool isAnd = compound.type == CompoundType::conjunction;
  // A negation of several, which nothing makes, negates each of them.
  if (parts.empty()) return isAnd || isNegation ? "TRUEPREDICATE" : "FALSEPREDICATE";
  if (parts.size() == 1) return textOfPart(parts[0], isPart);

  std::string text;
  for (const Predicate& part : parts) {
    if (!text.empty()) text += isAnd ? " AND " : " OR ";
    text += textOfPart(part, true);
  }
  if (isNegation) return "NOT (" + text + ")";
  return isPart ? "(" + text + ")" : text;
}

/// Rows in compounds are put in parentheses, so that they stay compounds of their own.
std::string textOfPart(const Predicate& predicate, bool isPart) {
  if (const auto* fixed = predicate.get<Fixed>()) {
    return fixed->value ? "TRUEPREDICATE" : "FALSEPREDICATE";
  }
  if (const auto* comparison = predicate.get<Comparison>()) return textOfComparison(*comparison);
  return textOfCompound(*predicate.get<Compound>(), isPart);
}

}  // namespace

std::string textOf(const Predicate& predicate) { return textOfPart(predicate, false); }

}  // namespace pelmora::platform::predicate
