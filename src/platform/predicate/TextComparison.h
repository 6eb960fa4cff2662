#pragma once

#include "platform/predicate/Predicate.h"

#include <string_view>

namespace pelmora::platform::predicate {

/// Whether two texts satisfy an operator, with these options. Texts are compared code point by code
/// point, folded by the options. IN: the left text occurs in the right one. LIKE: on the right, '*'
/// stands for any characters and '?' for any one; a backslash before either, or before another,
/// makes it plain. MATCHES: the right text is a regular expression of ICU for the whole left one;
/// an expression that is invalid, or takes too many steps or too much memory, matches nothing. A
/// pattern is understood as it is written, and its plain characters are folded then. An operator
/// that is not for texts: false. Both texts are untrusted. Thread: any.
[[nodiscard]] bool textSatisfies(Operator type, std::string_view left, std::string_view right,
                                 unsigned options);

}  // namespace pelmora::platform::predicate
