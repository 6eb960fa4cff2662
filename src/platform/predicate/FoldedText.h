#pragma once

#include <string>
#include <string_view>

namespace pelmora::platform::predicate {

/// What of a text is not to matter.
struct Folding {
  bool ignoresCase = false;
  bool ignoresDiacritics = false;
  bool operator==(const Folding&) const = default;
};

/// `utf8` in a form that is the same for all texts that differ only in what doesn't matter. Case:
/// by the full case folding of Unicode, which knows no locale ("Straße" is "STRASSE"). Diacritics:
/// decomposed for compatibility, without the marks that take no space of their own ("é" is "e").
/// Bytes that are no UTF-8 become U+FFFD, unless everything matters. Equal bytes are equal code
/// points, and their order is the order of code points. What is over 64 MB and not ASCII is left
/// as it is. Thread: any.
[[nodiscard]] std::string foldedText(std::string_view utf8, Folding folding);

}  // namespace pelmora::platform::predicate
