#include "platform/predicate/TextComparison.h"

#include "platform/predicate/FoldedPattern.h"
#include "platform/predicate/FoldedText.h"
#include "platform/predicate/RegexMatch.h"

#include <string>

namespace pelmora::platform::predicate {

namespace {

/// Equal to no code point and no piece of a pattern.
constexpr char32_t kNoPiece = 0xFFFFFFFF;

/// When what follows a '*' does not fit, the last one takes a character more; earlier ones need not
/// be tried again, so the time is bounded by the product of the lengths.
bool isLike(std::string_view text, const LikePattern& pattern) {
  std::size_t at = 0;
  std::size_t patternAt = 0;
  std::size_t resumeAt = 0;
  std::size_t resumePattern = LikePattern::npos;
  while (at < text.size()) {
    std::size_t behind = at;
    const char32_t codePoint = codePointOrByte(text, behind);
    const char32_t piece = patternAt < pattern.size() ? pattern[patternAt] : kNoPiece;
    if (piece == kAnyCharacters) {
      resumePattern = ++patternAt;
      resumeAt = at;
    } else if (piece == kAnyCharacter || piece == codePoint) {
      at = behind;
      ++patternAt;
    } else if (resumePattern != LikePattern::npos) {
      (void)codePointOrByte(text, resumeAt);
      at = resumeAt;
      patternAt = resumePattern;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(kAnyCharacters, patternAt) == LikePattern::npos;
}

}  // namespace

bool textSatisfies(Operator type, std::string_view left, std::string_view right, unsigned options) {
  const Folding folding{(options & kCaseInsensitive) != 0, (options & kDiacriticInsensitive) != 0};
  if (type == Operator::like) {
    return isLike(foldedText(left, folding), foldedLikePattern(right, folding));
  }
  if (type == Operator::matches) return matchesRegex(left, right, folding);
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
    case Operator::beginsWith:
      return a.starts_with(b);
    case Operator::endsWith:
      return a.ends_with(b);
    case Operator::contains:
      return a.find(b) != std::string::npos;
    case Operator::in:
      return b.find(a) != std::string::npos;
    case Operator::like:
    case Operator::matches:
    case Operator::customSelector:
    case Operator::between:
      return false;
  }
  return false;
}

}  // namespace pelmora::platform::predicate
