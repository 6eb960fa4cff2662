#pragma once

#include "platform/predicate/Predicate.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace pelmora::filtereditor {

/// A comparison of an attribute with a text, as one row of the editor has it. New ones ignore case
/// and diacritics. Thread: a plain value.
struct Row {
  std::string attribute = "kMDItemFSName";
  platform::predicate::Operator type = platform::predicate::Operator::contains;
  std::string text;  // UTF-8
  unsigned options = platform::predicate::kAllOptions;
  bool operator==(const Row&) const = default;
};

/// How many of a group's members have to hold.
enum class Match : std::uint8_t { all, any, none };

/// How the outermost group stands in its predicate.
enum class Form : std::uint8_t {
  plain,  // as every other group does
  bare,   // an "all" of one row, which is a comparison and no compound
  /// A "none" that is the only member of a conjunction. Who uses a filter looks through its
  /// outermost compound where that has one member, and would take the negation away.
  guarded
};

struct Item;

/// Rows and groups of which all, any or none have to hold.
struct Group {
  Match match = Match::all;
  std::vector<Item> items;
  Form form = Form::plain;  // of the outermost group; what does not fit its members is plain
};

struct Item {
  std::variant<Row, Group> content;

  Item(Row row) : content(std::move(row)) {}
  Item(Group group) : content(std::move(group)) {}
};

/// The longest text and the longest name of an attribute that a row shows, in bytes: no more than a
/// field holds characters. What is typed is a third of it at most, whatever the characters.
inline constexpr std::size_t kLongestText = 30'000;

/// Whether the editor has this operator.
[[nodiscard]] bool isEditable(platform::predicate::Operator type);

/// The predicate as rows, from which `toPredicate` makes it again, equal in all. nullopt where
/// that cannot be: it has something that no row shows (another operator, a value that is no text,
/// a modifier, a negation of something else than a disjunction, bytes that are no text), or is
/// beyond the limits of predicates. Thread: any.
[[nodiscard]] std::optional<Group> fromPredicate(const platform::predicate::Predicate& predicate);

/// "None" is the negation of a disjunction. Thread: any.
[[nodiscard]] platform::predicate::Predicate toPredicate(const Group& group);

}  // namespace pelmora::filtereditor
