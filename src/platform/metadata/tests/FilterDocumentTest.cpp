#include "platform/metadata/AttributeTable.h"

#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <vector>

// What docs/filters.md tells users of attributes and of the format of filters is true.

namespace pelmora::platform::metadata {

namespace {

std::vector<std::string> linesOfDocument() {
  std::vector<std::string> lines;
  std::ifstream file(PELMORA_FILTER_DOCUMENT);
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

/// The rows of the tables, by what is in their first column.
std::map<std::string, std::string> rowsByAttribute() {
  std::map<std::string, std::string> rows;
  for (const std::string& line : linesOfDocument()) {
    if (!line.starts_with("| `kMDItem")) continue;
    rows[line.substr(3, line.find('`', 3) - 3)] = line;
  }
  return rows;
}

std::vector<std::string> examples() {
  std::vector<std::string> examples;
  bool isInBlock = false;
  bool isInExample = false;  // in a block of filters, and not of commands
  for (const std::string& indented : linesOfDocument()) {
    const std::size_t begin = std::min(indented.find_first_not_of(' '), indented.size());
    const std::string line = indented.substr(begin);
    if (line.starts_with("```")) {
      isInBlock = !isInBlock;
      isInExample = isInBlock && line == "```";
    } else if (isInExample) {
      examples.push_back(line);
    }
  }
  return examples;
}

std::set<std::string> found(const std::string& text, const char* expression) {
  const std::regex wanted(expression);
  std::set<std::string> words;
  for (std::sregex_iterator i(text.begin(), text.end(), wanted), end; i != end; ++i) {
    words.insert(i->str());
  }
  return words;
}

/// The keys of Exiv2 in a text.
std::set<std::string> keysIn(const std::string& text) {
  return found(text, "(Exif|Iptc|Xmp)[.][A-Za-z0-9]+[.][A-Za-z0-9]+");
}

std::string kindOf(const Attribute& attribute) {
  switch (attribute.type) {
    case ValueType::text:
      return attribute.hasSeveral ? "texts" : "text";
    case ValueType::integer:
      return "whole number";
    case ValueType::real:
      return "number";
    case ValueType::date:
      return "date";
  }
  return {};
}

}  // namespace

TEST(FilterDocument, tellsEveryAttributeWithItsKindAndWhatItIsReadFrom) {
  const auto rows = rowsByAttribute();
  for (const Attribute& attribute : attributeTable()) {
    const std::string name(attribute.name);
    ASSERT_TRUE(rows.contains(name)) << name << " is missing in docs/filters.md";
    const std::string& row = rows.at(name);
    EXPECT_TRUE(row.starts_with("| `" + name + "` | " + kindOf(attribute) + " | ")) << row;
    EXPECT_EQ(keysIn(row), keysIn(std::string(attribute.readFrom))) << row;
  }
  EXPECT_EQ(rows.size(), attributeTable().size());
}

TEST(FilterDocument, showsFiltersThatAreUnderstood) {
  EXPECT_GT(examples().size(), 10U);
  for (const std::string& example : examples()) {
    const auto predicate = predicate::parsePredicate(example);
    EXPECT_TRUE(predicate) << example << ": " << predicate.error().message;
    for (const std::string& name : found(example, "kMDItem[A-Za-z0-9]+")) {
      EXPECT_TRUE(attributeNamed(name)) << example;
    }
  }
}

}  // namespace pelmora::platform::metadata
