#pragma once

#include "platform/predicate/Predicate.h"
#include "shared/Result.h"

#include <string>
#include <string_view>

namespace pelmora::platform::predicate {

// The platform's format of predicates:
//
//   kMDItemFSName CONTAINS[cd] "beach" AND NOT (kMDItemKeywords == "work" OR kMDItemCity == "Oslo")
//
// Comparisons: == = != <> < <= =< > >= => BEGINSWITH ENDSWITH CONTAINS LIKE MATCHES IN BETWEEN,
// each with [c], [d] or [cd] behind it, and with ANY, SOME (the same), ALL or NONE (NOT ANY) before
// it. They are combined by NOT !, AND &&, OR ||, in this order of strength, and parentheses. A row
// of ANDs, or of ORs, is one compound. TRUEPREDICATE and FALSEPREDICATE hold always and never.
// BETWEEN takes values in braces, or an attribute.
// Values: "text" or 'text' with \\ \" \' \n \r \t \uXXXX in it, 12, -1.5, 1e6, 0xFF, 0o17, 0b101,
// TRUE YES FALSE NO, NULL NIL, { values in braces }, CAST(12.5, "NSDate") for seconds since 2001,
// SELF, and key paths: identifiers with dots between; #and is a key path that is named as a word of
// the format. Such words may be in any case. Words that only others reserve, as SIZE, are names
// here, with or without the '#'.

/// Reads the format. An error tells the place, in characters from 1: "expected a value after
/// 'contains[cd]' at character 27". Thread: any.
[[nodiscard]] Result<Predicate> parsePredicate(std::string_view text);

/// A predicate in the format. Whatever was parsed comes back the same from its text. Of others,
/// compounds of fewer than two become what they mean (TRUEPREDICATE, FALSEPREDICATE, or the one),
/// and what the format cannot say stands in angle brackets, which are not parsed. Thread: any.
[[nodiscard]] std::string textOf(const Predicate& predicate);

/// Whether an unescaped key path of this name would be a word of the format instead.
[[nodiscard]] bool isReservedWord(std::string_view word);

}  // namespace pelmora::platform::predicate
