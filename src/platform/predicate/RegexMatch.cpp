#include "platform/predicate/RegexMatch.h"

#include "platform/predicate/FoldedPattern.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pelmora::platform::predicate {

namespace {

/// In ICU's unit, ten thousand steps: some milliseconds at most.
constexpr int32_t kMostTime = 10;
constexpr int32_t kMostStack = 1 << 20;  // bytes
/// An expression grows as it is compiled, so it is held shorter than what it is matched with.
constexpr std::size_t kLongestExpression = 1000;
constexpr std::size_t kLongestInput = 1 << 20;
constexpr std::size_t kMostKept = 8;

icu::UnicodeString utf16(std::string_view utf8) {
  return icu::UnicodeString::fromUTF8(
      icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
}

/// An expression as it is compiled, to be matched with one text after the other.
class CompiledRegex {
 public:
  CompiledRegex(std::string_view expression, Folding folding);

  [[nodiscard]] bool isOf(std::string_view expression, Folding folding) const {
    return expression == _expression && folding == _folding;
  }
  [[nodiscard]] bool matches(std::string_view text);

 private:
  std::string _expression;
  Folding _folding;
  icu::UnicodeString _text;                     // which the matcher refers to
  std::unique_ptr<icu::RegexMatcher> _matcher;  // nullptr: the expression is invalid
};

CompiledRegex::CompiledRegex(std::string_view expression, Folding folding)
    : _expression(expression), _folding(folding) {
  const std::string folded =
      folding.ignoresDiacritics ? regexWithoutDiacritics(expression) : _expression;
  if (folded.size() > kLongestExpression) return;
  // In lower case, \D would become another class.
  const uint32_t flags = folding.ignoresCase ? uint32_t{UREGEX_CASE_INSENSITIVE} : 0;
  UErrorCode status = U_ZERO_ERROR;
  auto matcher = std::make_unique<icu::RegexMatcher>(utf16(folded), flags, status);
  if (U_FAILURE(status)) return;
  matcher->setTimeLimit(kMostTime, status);
  matcher->setStackLimit(kMostStack, status);
  if (U_SUCCESS(status)) _matcher = std::move(matcher);
}

bool CompiledRegex::matches(std::string_view text) {
  if (!_matcher) return false;
  const std::string folded = foldedText(text, {.ignoresDiacritics = _folding.ignoresDiacritics});
  if (folded.size() > kLongestInput) return false;
  _text = utf16(folded);
  _matcher->reset(_text);
  UErrorCode status = U_ZERO_ERROR;
  const bool isWhole = _matcher->matches(status);
  return U_SUCCESS(status) && isWhole;
}

/// The expression, compiled by this thread if it is none of those that it was last asked for.
CompiledRegex& compiled(std::string_view expression, Folding folding) {
  thread_local std::vector<std::unique_ptr<CompiledRegex>> kept;  // the last one first
  const auto found = std::find_if(
      kept.begin(), kept.end(), [&](const auto& each) { return each->isOf(expression, folding); });
  if (found != kept.end()) {
    std::rotate(kept.begin(), found, std::next(found));
  } else {
    if (kept.size() == kMostKept) kept.pop_back();
    kept.insert(kept.begin(), std::make_unique<CompiledRegex>(expression, folding));
  }
  return *kept.front();
}

}  // namespace

bool matchesRegex(std::string_view text, std::string_view expression, Folding folding) {
  if (expression.size() > kLongestExpression) return false;
  return compiled(expression, folding).matches(text);
}

}  // namespace pelmora::platform::predicate
