#include "platform/predicate/FoldedText.h"

#include "platform/UnicodeText.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

namespace pelmora::platform::predicate {

namespace {

/// Longer texts are not folded: they are no names, and ICU counts in 32 bits.
constexpr std::size_t kLongestText = 64 << 20;

std::string inLowerCase(std::string_view ascii) {
  std::string lower(ascii);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

icu::UnicodeString decomposed(const icu::UnicodeString& text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* const form = icu::Normalizer2::getNFKDInstance(status);
  if (U_FAILURE(status)) return text;
  icu::UnicodeString result = form->normalize(text, status);
  return U_FAILURE(status) ? text : result;
}

icu::UnicodeString withoutMarks(const icu::UnicodeString& text) {
  icu::UnicodeString result;
  for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
    const UChar32 c = text.char32At(i);
    const auto type = u_charType(c);
    if (type != U_NON_SPACING_MARK && type != U_ENCLOSING_MARK) result.append(c);
  }
  return result;
}

}  // namespace

std::string foldedText(std::string_view utf8, Folding folding) {
  if (!folding.ignoresCase && !folding.ignoresDiacritics) return std::string(utf8);
  if (plist::isAscii(utf8)) return folding.ignoresCase ? inLowerCase(utf8) : std::string(utf8);
  if (utf8.size() > kLongestText) return std::string(utf8);

  auto text = icu::UnicodeString::fromUTF8(
      icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
  // Letters of compatibility decompose into capitals, and capitals fold into what decomposes.
  if (folding.ignoresDiacritics) text = decomposed(text);
  if (folding.ignoresCase) text.foldCase();
  if (folding.ignoresCase && folding.ignoresDiacritics) text = decomposed(text).foldCase();
  if (folding.ignoresDiacritics) text = withoutMarks(decomposed(text));
  std::string result;
  return text.toUTF8String(result);
}

}  // namespace pelmora::platform::predicate
