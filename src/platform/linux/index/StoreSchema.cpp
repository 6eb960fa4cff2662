#include "platform/linux/index/StoreSchema.h"

#include "platform/predicate/FoldedText.h"

#include <unicode/uchar.h>

#include <algorithm>

namespace pelmora::platform {

namespace {

using metadata::Attribute;
using metadata::attributeTable;
using metadata::ValueType;
using predicate::Constant;

constexpr int kStoreVersion = 1;

std::vector<StoredColumn> makeColumns() {
  std::vector<StoredColumn> columns;
  const auto table = attributeTable();
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (isName(i) || isPath(i)) continue;
    columns.push_back({i, TextForm::raw});
    if (table[i].type == ValueType::text) columns.push_back({i, TextForm::folded});
  }
  return columns;
}

std::string typeOf(ValueType type) {
  switch (type) {
    case ValueType::text:
      return " BLOB";
    case ValueType::integer:
      return " INTEGER";
    case ValueType::real:
    case ValueType::date:
      return " REAL";
  }
  return " ANY";
}

std::vector<std::string> makeStatements() {
  std::string files =
      "CREATE TABLE files(id INTEGER PRIMARY KEY AUTOINCREMENT, folder INTEGER NOT NULL, "
      "name BLOB NOT NULL, inode INTEGER NOT NULL, bytes INTEGER NOT NULL, "
      "changeSeconds INTEGER NOT NULL, changeNanoseconds INTEGER NOT NULL, folded BLOB NOT NULL, ";
  for (const StoredColumn& column : storedColumns()) {
    files += nameOf(column) + typeOf(attributeTable()[column.attribute].type) + ", ";
  }
  files += "UNIQUE(folder, name)) STRICT";
  return {
      "CREATE TABLE folders(id INTEGER PRIMARY KEY AUTOINCREMENT, path BLOB NOT NULL UNIQUE, "
      "used INTEGER NOT NULL) STRICT",
      files, "CREATE INDEX filesOfFolder ON files(folder)"};
}

}  // namespace

std::span<const StoredColumn> storedColumns() {
  static const std::vector<StoredColumn> columns = makeColumns();
  return columns;
}

std::span<const std::string> schemaStatements() {
  static const std::vector<std::string> statements = makeStatements();
  return statements;
}

int schemaVersion() {
  UVersionInfo unicode;
  u_getUnicodeVersion(unicode);
  return (metadata::kAttributeTableVersion * 100 + kStoreVersion) * 10'000 + unicode[0] * 100 +
         unicode[1];
}

std::string nameOf(const StoredColumn& column) {
  const std::string name(attributeTable()[column.attribute].name);
  return column.form == TextForm::folded ? name + "_folded" : name;
}

bool isName(std::size_t attribute) {
  const std::string_view name = attributeTable()[attribute].name;
  return name == "kMDItemFSName" || name == "kMDItemDisplayName";
}

bool isPath(std::size_t attribute) { return attributeTable()[attribute].name == "kMDItemPath"; }

std::string expressionOf(std::size_t attribute, TextForm form) {
  const std::string name = form == TextForm::folded ? "folded" : "name";
  if (isName(attribute)) return name;
  if (!isPath(attribute)) return nameOf({attribute, form});
  const int prefix = form == TextForm::folded ? kFoldedPrefixParameter : kFolderPrefixParameter;
  return "CAST(?" + std::to_string(prefix) + " || " + name + " AS BLOB)";
}

std::string foldedForStore(std::string_view text) {
  return predicate::foldedText(text, {.ignoresCase = true, .ignoresDiacritics = true});
}

std::string joinedTexts(std::span<const Constant> values, TextForm form) {
  std::string joined(1, kBetween);
  for (const Constant& value : values) {
    const auto* text = value.get<std::string>();
    if (!text) continue;
    std::string part = form == TextForm::folded ? foldedForStore(*text) : *text;
    std::erase(part, kBetween);
    joined += part;
    joined += kBetween;
  }
  return joined.size() > 1 ? joined : std::string();
}

namespace {

std::vector<Constant> splitTexts(std::string_view joined) {
  std::vector<Constant> values;
  if (joined.size() < 2 || joined.front() != kBetween || joined.back() != kBetween) return values;
  for (joined.remove_prefix(1); !joined.empty();) {
    const std::size_t length = joined.find(kBetween);
    values.emplace_back(std::string(joined.substr(0, length)));
    joined.remove_prefix(length + 1);
  }
  return values;
}

}  // namespace

std::vector<Constant> valuesIn(const SqlValue& stored, std::size_t attribute) {
  const Attribute& described = attributeTable()[attribute];
  const auto* integer = std::get_if<std::int64_t>(&stored);
  const auto* real = std::get_if<double>(&stored);
  const auto* bytes = std::get_if<std::string_view>(&stored);
  switch (described.type) {
    case ValueType::text:
      if (!bytes) return {};
      if (described.hasSeveral) return splitTexts(*bytes);
      return {Constant(std::string(*bytes))};
    case ValueType::integer:
      if (!integer) return {};
      return {Constant(*integer)};
    case ValueType::real:
      if (!real) return {};
      return {Constant(*real)};
    case ValueType::date:
      if (!real) return {};
      return {Constant(ReferenceTime{*real})};
  }
  return {};
}

}  // namespace pelmora::platform
