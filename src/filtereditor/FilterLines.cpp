#include "filtereditor/FilterLines.h"

#include <utility>

namespace pelmora::filtereditor {

FilterLines::FilterLines(const Group& group) : _form(group.form) { append(group, 0); }

void FilterLines::append(const Group& group, int depth) {
  _lines.push_back({depth, group.match});
  for (const Item& item : group.items) {
    if (const auto* row = std::get_if<Row>(&item.content)) {
      _lines.push_back({depth + 1, *row});
    } else {
      append(std::get<Group>(item.content), depth + 1);
    }
  }
}

Group FilterLines::group() const {
  std::size_t at = 0;
  Group group = groupAt(at);
  group.form = _form;
  return group;
}

/// Moves `at` behind the group.
Group FilterLines::groupAt(std::size_t& at) const {
  const int depth = _lines[at].depth;
  Group group;
  group.match = std::get<Match>(_lines[at].content);
  for (++at; at < _lines.size() && _lines[at].depth > depth;) {
    if (const auto* row = std::get_if<Row>(&_lines[at].content)) {
      group.items.emplace_back(*row);
      ++at;
    } else {
      group.items.emplace_back(groupAt(at));
    }
  }
  return group;
}

std::optional<std::size_t> FilterLines::insertRow(std::size_t behind) {
  const bool isHead = std::holds_alternative<Match>(_lines[behind].content);
  const int depth = _lines[behind].depth + (isHead ? 1 : 0);
  if (!insert(behind + 1, {{depth, Row{}}})) return std::nullopt;
  return behind + 1;
}

std::optional<std::size_t> FilterLines::appendRow() {
  const std::size_t end = _lines.size();
  if (!insert(end, {{1, Row{}}})) return std::nullopt;
  return end;
}

std::optional<std::size_t> FilterLines::insertGroup(std::size_t behind) {
  const bool isHead = std::holds_alternative<Match>(_lines[behind].content);
  const int depth = _lines[behind].depth + (isHead ? 1 : 0);
  // Of the other kind, as a group of the same adds nothing.
  const Match around = std::get<Match>(_lines[headOf(behind)].content);
  const Match match = around == Match::all ? Match::any : Match::all;
  if (!insert(behind + 1, {{depth, match}, {depth + 1, Row{}}})) return std::nullopt;
  return behind + 1;
}

bool FilterLines::insert(std::size_t at, const std::vector<Line>& lines) {
  const FilterLines before = *this;
  _lines.insert(_lines.begin() + static_cast<std::ptrdiff_t>(at), lines.begin(), lines.end());
  return keepUnlessTooMuch(before);
}

FilterLines::Range FilterLines::remove(std::size_t at) {
  if (at == 0) return {};
  const std::size_t end = endOf(at);
  // The head of a group that has nothing else.
  while (at > 1 && endOf(at - 1) == end) --at;
  const auto begin = _lines.begin();
  _lines.erase(begin + static_cast<std::ptrdiff_t>(at), begin + static_cast<std::ptrdiff_t>(end));
  if (_lines.size() == 1) *this = FilterLines();
  settleForm();
  return {at, end - at};
}

/// Behind a line and what is deeper.
std::size_t FilterLines::endOf(std::size_t at) const {
  std::size_t end = at + 1;
  while (end < _lines.size() && _lines[end].depth > _lines[at].depth) ++end;
  return end;
}

/// The head that a line stands under; of a head, itself.
std::size_t FilterLines::headOf(std::size_t at) const {
  if (std::holds_alternative<Match>(_lines[at].content)) return at;
  const int depth = _lines[at].depth;
  while (_lines[at].depth >= depth) --at;
  return at;
}

void FilterLines::setRow(std::size_t at, Row row) {
  std::get<Row>(_lines[at].content) = std::move(row);
  settleForm();
}

bool FilterLines::setMatch(std::size_t at, Match match) {
  const FilterLines before = *this;
  std::get<Match>(_lines[at].content) = match;
  return keepUnlessTooMuch(before);
}

bool FilterLines::keepUnlessTooMuch(const FilterLines& before) {
  settleForm();
  if (platform::predicate::isWithinLimits(toPredicate(group()))) return true;
  *this = before;
  return false;
}

/// After a change: a filter that somebody made here means what it shows.
void FilterLines::settleForm() {
  if (std::get<Match>(_lines.front().content) == Match::none) _form = Form::guarded;
}

}  // namespace pelmora::filtereditor
