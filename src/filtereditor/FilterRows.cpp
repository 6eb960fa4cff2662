#include "filtereditor/FilterRows.h"

#include "platform/UnicodeText.h"

#include <utility>

namespace pelmora::filtereditor {

namespace {

using platform::predicate::Comparison;
using platform::predicate::Compound;
using platform::predicate::CompoundType;
using platform::predicate::Constant;
using platform::predicate::KeyPath;
using platform::predicate::Modifier;
using platform::predicate::Operator;
using platform::predicate::Predicate;

bool canBeShown(const std::string& text) {
  return text.size() <= kLongestText && plist::isUtf8(text);
}

std::optional<Row> rowOf(const Comparison& comparison) {
  const auto* attribute = std::get_if<KeyPath>(&comparison.left);
  const auto* constant = std::get_if<Constant>(&comparison.right);
  const auto* text = constant ? constant->get<std::string>() : nullptr;
  if (!attribute || attribute->path.empty() || !text) return std::nullopt;
  if (!canBeShown(attribute->path) || !canBeShown(*text)) return std::nullopt;
  if (comparison.modifier != Modifier::direct || !isEditable(comparison.type)) return std::nullopt;
  return Row{.attribute = attribute->path,
             .type = comparison.type,
             .text = *text,
             .options = comparison.options};
}

/// The only member, or nullptr where there are others or none.
const Compound* onlyCompoundIn(const Compound& compound) {
  if (compound.subpredicates.size() != 1) return nullptr;
  return compound.subpredicates.front().get<Compound>();
}

std::optional<Item> itemOf(const Predicate& predicate);

std::optional<Group> groupOf(const Compound& compound) {
  const Compound* members = &compound;
  Group group;
  if (compound.type == CompoundType::disjunction) group.match = Match::any;
  if (compound.type == CompoundType::negation) {
    group.match = Match::none;
    members = onlyCompoundIn(compound);
    if (!members || members->type != CompoundType::disjunction) return std::nullopt;
  }
  for (const Predicate& member : members->subpredicates) {
    std::optional<Item> item = itemOf(member);
    if (!item) return std::nullopt;
    group.items.push_back(*std::move(item));
  }
  return group;
}

std::optional<Item> itemOf(const Predicate& predicate) {
  if (const auto* comparison = predicate.get<Comparison>()) return rowOf(*comparison);
  if (const auto* compound = predicate.get<Compound>()) return groupOf(*compound);
  return std::nullopt;
}

Predicate predicateOf(const Row& row) {
  return Comparison{.left = KeyPath{row.attribute},
                    .type = row.type,
                    .right = Constant(row.text),
                    .options = row.options};
}

Predicate compoundOf(const Group& group) {
  Compound compound;
  if (group.match != Match::all) compound.type = CompoundType::disjunction;
  for (const Item& item : group.items) {
    const auto* row = std::get_if<Row>(&item.content);
    compound.subpredicates.push_back(row ? predicateOf(*row)
                                         : compoundOf(std::get<Group>(item.content)));
  }
  if (group.match != Match::none) return compound;
  return Compound{.type = CompoundType::negation, .subpredicates = {std::move(compound)}};
}

/// The row that stands for its whole group, or nullptr.
const Row* bareRowOf(const Group& group) {
  const bool isBare =
      group.form == Form::bare && group.match == Match::all && group.items.size() == 1;
  return isBare ? std::get_if<Row>(&group.items.front().content) : nullptr;
}

}  // namespace

bool isEditable(Operator type) {
  switch (type) {
    case Operator::equal:
    case Operator::notEqual:
    case Operator::beginsWith:
    case Operator::endsWith:
    case Operator::contains:
      return true;
    default:
      return false;
  }
}

std::optional<Group> fromPredicate(const Predicate& predicate) {
  if (!isWithinLimits(predicate)) return std::nullopt;
  if (const auto* comparison = predicate.get<Comparison>()) {
    std::optional<Row> row = rowOf(*comparison);
    if (!row) return std::nullopt;
    return Group{.match = Match::all, .items = {*std::move(row)}, .form = Form::bare};
  }
  const auto* compound = predicate.get<Compound>();
  if (!compound) return std::nullopt;
  const Compound* only =
      compound->type == CompoundType::conjunction ? onlyCompoundIn(*compound) : nullptr;
  const bool isGuarded = only && only->type == CompoundType::negation;
  std::optional<Group> group = groupOf(isGuarded ? *only : *compound);
  if (group && isGuarded) group->form = Form::guarded;
  return group;
}

Predicate toPredicate(const Group& group) {
  if (const Row* row = bareRowOf(group)) return predicateOf(*row);
  Predicate compound = compoundOf(group);
  if (group.form != Form::guarded || group.match != Match::none) return compound;
  return Compound{.type = CompoundType::conjunction, .subpredicates = {std::move(compound)}};
}

}  // namespace pelmora::filtereditor
