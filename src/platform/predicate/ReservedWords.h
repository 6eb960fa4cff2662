#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace pelmora::platform::predicate {

/// The words of the format.
inline constexpr std::array<std::string_view, 25> kReservedWords = {
    "AND",      "OR",      "NOT",  "ANY",     "SOME",          "ALL",
    "NONE",     "IN",      "LIKE", "MATCHES", "CONTAINS",      "BEGINSWITH",
    "ENDSWITH", "BETWEEN", "TRUE", "YES",     "FALSE",         "NO",
    "NULL",     "NIL",     "SELF", "CAST",    "TRUEPREDICATE", "FALSEPREDICATE",
    "SUBQUERY"};

/// Those that mean nothing here, but to others who read the format: as names they are read, but not
/// written.
inline constexpr std::array<std::string_view, 7> kWordsOfOthers = {
    "FIRST", "LAST", "SIZE", "ANYKEY", "FETCH", "CASEINSENSITIVE", "CI"};

[[nodiscard]] constexpr char upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Whether a word in any case is that one, which is in capitals.
[[nodiscard]] constexpr bool equalsInAnyCase(std::string_view word, std::string_view upperWord) {
  return std::equal(word.begin(), word.end(), upperWord.begin(), upperWord.end(),
                    [](char a, char b) { return upper(a) == b; });
}

template <std::size_t n>
[[nodiscard]] constexpr bool isOneInAnyCase(std::string_view word,
                                            const std::array<std::string_view, n>& upperWords) {
  return std::any_of(upperWords.begin(), upperWords.end(),
                     [word](std::string_view known) { return equalsInAnyCase(word, known); });
}

}  // namespace pelmora::platform::predicate
