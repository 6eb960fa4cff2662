#pragma once

#include "filtereditor/FilterRows.h"

#include <cstddef>
#include <optional>
#include <variant>
#include <vector>

namespace pelmora::filtereditor {

/// A line of the editor: a row, or the head of a group.
struct Line {
  int depth = 0;
  std::variant<Row, Match> content;
};

/// The rows and groups of a filter in the order in which they stand below each other. The first
/// line is the head of the outermost group, of depth 0; the members of a group are the lines behind
/// its head that are one deeper. Thread: a plain value. Errors: what would be beyond the limits of
/// predicates is refused, and nothing changes.
class FilterLines {
 public:
  /// The outermost group alone, an "all".
  FilterLines() : _lines{{0, Match::all}}, _form(Form::bare) {}
  explicit FilterLines(const Group& group);

  [[nodiscard]] const std::vector<Line>& lines() const { return _lines; }
  [[nodiscard]] Group group() const;

  /// An empty row behind a line: of a row as the next one, of a head as its first member. Tells
  /// where it is.
  std::optional<std::size_t> insertRow(std::size_t behind);
  /// The same as the last member of the outermost group.
  std::optional<std::size_t> appendRow();
  /// A group with an empty row in it. Tells where its head is.
  std::optional<std::size_t> insertGroup(std::size_t behind);

  struct Range {
    std::size_t first = 0;
    std::size_t count = 0;
  };
  /// Takes out a line, with its members, and the groups that are left without any; not the
  /// outermost, which becomes an "all" then. Tells which lines that were.
  Range remove(std::size_t at);

  void setRow(std::size_t at, Row row);
  /// False where it is refused.
  bool setMatch(std::size_t at, Match match);

 private:
  void append(const Group& group, int depth);
  Group groupAt(std::size_t& at) const;
  [[nodiscard]] std::size_t endOf(std::size_t at) const;
  [[nodiscard]] std::size_t headOf(std::size_t at) const;
  bool insert(std::size_t at, const std::vector<Line>& lines);
  bool keepUnlessTooMuch(const FilterLines& before);
  void settleForm();

  std::vector<Line> _lines;
  Form _form;
};

}  // namespace pelmora::filtereditor
