#include "platform/predicate/TextComparison.h"

#include "platform/predicate/FoldedText.h"
#include "platform/UnicodeText.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <string>

namespace pelmora::platform::predicate {

namespace {

/// In ICU's unit, ten thousand steps: some milliseconds at most.
constexpr int32_t kMostRegexTime = 10;
constexpr int32_t kMostRegexStack = 1 << 20;  // bytes
/// An expression grows as it is compiled, so it is held shorter than what it is matched with.
constexpr std::size_t kLongestRegex = 1000;
constexpr std::size_t kLongestRegexInput = 1 << 20;

/// A code point of a pattern, and whether it stands for itself.
struct PatternPiece {
  char32_t codePoint = 0;
  bool isPlain = true;
  std::size_t behind = 0;  // where the next piece begins
};

/// The code point at `at`; of bytes that are no UTF-8, the byte.
char32_t codePointAt(std::string_view text, std::size_t at, std::size_t& behind) {
  behind = at;
  if (const auto codePoint = plist::nextCodePoint(text, behind)) return *codePoint;
  behind = at + 1;
  return static_cast<unsigned char>(text[at]);
}

PatternPiece pieceAt(std::string_view pattern, std::size_t at) {
  PatternPiece piece;
  const bool isEscape = pattern[at] == '\\' && at + 1 < pattern.size() &&
                        std::string_view("*?\\").find(pattern[at + 1]) != std::string_view::npos;
  if (isEscape) ++at;
  piece.codePoint = codePointAt(pattern, at, piece.behind);
  piece.isPlain = isEscape || (piece.codePoint != U'*' && piece.codePoint != U'?');
  return piece;
}

/// When what follows a '*' does not fit, the last one takes a character more; earlier ones need not
/// be tried again, so the time is bounded by the product of the lengths.
bool isLike(std::string_view text, std::string_view pattern) {
  std::size_t at = 0;
  std::size_t patternAt = 0;
  std::size_t resumeAt = 0;
  std::size_t resumePattern = std::string_view::npos;
  while (at < text.size()) {
    std::size_t behind = 0;
    const char32_t codePoint = codePointAt(text, at, behind);
    if (patternAt < pattern.size()) {
      const PatternPiece piece = pieceAt(pattern, patternAt);
      if (!piece.isPlain && piece.codePoint == U'*') {
        patternAt = resumePattern = piece.behind;
        resumeAt = at;
        continue;
      }
      if (!piece.isPlain || piece.codePoint == codePoint) {
        at = behind;
        patternAt = piece.behind;
        continue;
      }
    }
    if (resumePattern == std::string_view::npos) return false;
    codePointAt(text, resumeAt, resumeAt);
    at = resumeAt;
    patternAt = resumePattern;
  }
  while (patternAt < pattern.size() && pattern[patternAt] == '*') ++patternAt;
  return patternAt == pattern.size();
}

icu::UnicodeString utf16(std::string_view utf8) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
}

bool matchesRegex(std::string_view text, std::string_view expression, bool ignoresCase) {
  if (expression.size() > kLongestRegex || text.size() > kLongestRegexInput) return false;
  const icu::UnicodeString input = utf16(text);
  UErrorCode status = U_ZERO_ERROR;
  const uint32_t flags = ignoresCase ? uint32_t{UREGEX_CASE_INSENSITIVE} : 0;
  icu::RegexMatcher matcher(utf16(expression), flags, status);
  if (U_FAILURE(status)) return false;
  matcher.setTimeLimit(kMostRegexTime, status);
  matcher.setStackLimit(kMostRegexStack, status);
  matcher.reset(input);
  const bool isMatch = matcher.matches(status);
  return U_SUCCESS(status) && isMatch;
}

}  // namespace

bool textSatisfies(Operator type, std::string_view left, std::string_view right, unsigned options) {
  Folding folding{(options & kCaseInsensitive) != 0, (options & kDiacriticInsensitive) != 0};
  const bool ignoresCase = folding.ignoresCase;
  // Lower case would make another class of \D in an expression.
  if (type == Operator::matches) folding.ignoresCase = false;
  const std::string a = foldedText(left, folding);
  const std::string b = foldedText(right, folding);
  switch (type) {
    case Operator::lessThan:
      return a < b;
    case Operator::lessThanOrEqual:
      return a <= b;
    case Operator::greaterThan:
      return a > b;
    case Operator::greaterThanOrEqual:
      return a >= b;
    case Operator::equal:
      return a == b;
    case Operator::notEqual:
      return a != b;
    case Operator::matches:
      return matchesRegex(a, b, ignoresCase);
    case Operator::like:
      return isLike(a, b);
    case Operator::beginsWith:
      return a.starts_with(b);
    case Operator::endsWith:
      return a.ends_with(b);
    case Operator::contains:
      return a.find(b) != std::string::npos;
    case Operator::in:
      return b.find(a) != std::string::npos;
    case Operator::customSelector:
    case Operator::between:
      return false;
  }
  return false;
}

}  // namespace pelmora::platform::predicate
