#pragma once

#include "platform/predicate/FoldedText.h"

#include <string_view>

namespace pelmora::platform::predicate {

/// Whether a whole text matches a regular expression of ICU. Diacritics are taken from both, case
/// is left to ICU; an expression that is invalid or longer than 1000 bytes, or takes too many steps
/// or too much memory, matches nothing. Each thread keeps the few expressions that it was last
/// asked for as they are compiled, as a query asks for the same ones file by file. Both texts are
/// untrusted. Thread: any.
[[nodiscard]] bool matchesRegex(std::string_view text, std::string_view expression,
                                Folding folding);

}  // namespace pelmora::platform::predicate
