#pragma once

#include "platform/predicate/FoldedText.h"

#include <string>
#include <string_view>

namespace pelmora::platform::predicate {

// Patterns for texts that are folded. What a pattern says is found out first and folded then, as
// there are characters that fold into what means something in patterns: the wide '＊' into '*'.

/// What stands in a `LikePattern` where the pattern has '*' and '?': beyond all code points.
constexpr char32_t kAnyCharacters = 0x110000;
constexpr char32_t kAnyCharacter = 0x110001;

/// A pattern of LIKE as folded code points and the two above.
using LikePattern = std::u32string;

/// Bytes that are no UTF-8 stand for themselves. Thread: any.
[[nodiscard]] LikePattern foldedLikePattern(std::string_view pattern, Folding folding);

/// A pattern of LIKE that says of folded texts what `pattern` says of those that are to be folded.
/// Thread: any.
[[nodiscard]] std::string foldedLikeText(std::string_view pattern, Folding folding);

/// A regular expression of ICU, its plain characters without their diacritics; case is for the
/// expression's own option. Thread: any.
[[nodiscard]] std::string regexWithoutDiacritics(std::string_view expression);

/// The code point at `at`, which is moved behind it; of bytes that are no UTF-8, the byte.
[[nodiscard]] char32_t codePointOrByte(std::string_view text, std::size_t& at);

}  // namespace pelmora::platform::predicate
