#include "inspector/AttributeReader.h"

#include "inspector/EmbeddedValue.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace pelmora::inspector {

namespace {

using platform::metadata::Attribute;
using platform::metadata::attributeTable;
using platform::metadata::FileMetadata;
using platform::metadata::kMaxValues;
using platform::metadata::Origin;
using platform::metadata::ValueType;
using platform::predicate::Constant;

constexpr double kLargestWhole = 9e15;
constexpr std::array kColorLabels{"Red",     "Orange", "Yellow", "Green", "Blue",
                                  "Magenta", "Gray",   "Black",  "White"};

/// Of tags that are in others, such as "Places/Paris", the tag itself.
std::string lastPart(const std::string& tag) {
  const std::size_t slash = tag.rfind('/');
  return slash == std::string::npos ? tag : tag.substr(slash + 1);
}

std::vector<std::string> colorName(const Exiv2::Value& value) {
  const auto number = numberOf(value);
  if (!number || *number < 1 || *number > static_cast<double>(kColorLabels.size())) return {};
  return {kColorLabels[static_cast<std::size_t>(*number) - 1]};
}

/// Where there may be several, Exif puts them into one text.
std::vector<std::string> splitAtSemicolons(const std::string& text) {
  std::vector<std::string> parts;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find(';', at), text.size());
    std::string part = textFromBytes(std::string_view(text).substr(at, end - at));
    if (!part.empty()) parts.push_back(std::move(part));
    at = end + 1;
  }
  return parts;
}

std::vector<std::string> textsOfKey(const EmbeddedKey& key, const Exiv2::Value& value,
                                    const EmbeddedData& data, bool hasSeveral) {
  if (key.name == "Xmp.digiKam.ColorLabel") return colorName(value);
  std::vector<std::string> texts;
  if (key.name.starts_with("Exif.Image.XP")) {
    texts.push_back(textOfWideBytes(value));
  } else {
    const bool isUtf8 = key.family == EmbeddedKey::Family::iptc && data.isIptcUtf8();
    texts = textsOf(value, isUtf8 ? Otherwise::replaced : Otherwise::latin1);
  }
  std::erase(texts, std::string());
  if (key.family == EmbeddedKey::Family::exif && hasSeveral && !texts.empty()) {
    texts = splitAtSemicolons(texts.front());
  }
  if (key.name == "Xmp.digiKam.TagsList") {
    std::transform(texts.begin(), texts.end(), texts.begin(), lastPart);
    std::erase(texts, std::string());
  }
  return texts;
}

std::vector<Constant> numbersOf(const Exiv2::Value& value, ValueType type) {
  const auto number = numberOf(value);
  if (!number) return {};
  if (type == ValueType::real) return {*number};
  if (std::abs(*number) > kLargestWhole) return {};
  return {static_cast<std::int64_t>(std::llround(*number))};
}

std::vector<Constant> valuesOfKey(const EmbeddedKey& key, const EmbeddedData& data,
                                  const Attribute& attribute) {
  std::vector<Constant> values;
  for (const Exiv2::Value* const value : data.find(key)) {
    if (attribute.type == ValueType::text) {
      auto texts = textsOfKey(key, *value, data, attribute.hasSeveral);
      for (std::string& text : texts) values.emplace_back(std::move(text));
    } else {
      std::ranges::move(numbersOf(*value, attribute.type), std::back_inserter(values));
    }
    if (values.size() > kMaxValues) break;
  }
  return values;
}

void addWithoutDoubles(std::vector<Constant> more, std::vector<Constant>& values) {
  for (Constant& each : more) {
    if (values.size() == kMaxValues) return;
    const bool isThere = std::find(values.begin(), values.end(), each) != values.end();
    if (!isThere) values.push_back(std::move(each));
  }
}

}  // namespace

std::vector<EmbeddedKey> keysIn(std::string_view readFrom) {
  std::vector<EmbeddedKey> keys;
  while (!readFrom.empty()) {
    const char stop = readFrom.front() == '(' ? ')' : ' ';
    const std::size_t end = std::min(readFrom.find(stop), readFrom.size());
    if (stop == ' ' && end > 0) keys.emplace_back(readFrom.substr(0, end));
    readFrom.remove_prefix(std::min(end + 1, readFrom.size()));
  }
  return keys;
}

AttributeReader::AttributeReader() {
  const auto table = attributeTable();
  for (std::size_t i = 0; i < table.size(); ++i) {
    if (table[i].origin == Origin::file) continue;
    _rows.push_back({i, keysIn(table[i].readFrom), derivedReaderOf(table[i].name)});
  }
}

FileMetadata AttributeReader::read(const EmbeddedData& data) const {
  FileMetadata metadata;
  for (const Row& row : _rows) {
    const Attribute& attribute = attributeTable()[row.position];
    std::vector<Constant> values;
    for (const EmbeddedKey& key : row.keys) {
      if (!values.empty() && !attribute.hasSeveral) break;
      addWithoutDoubles(valuesOfKey(key, data, attribute), values);
    }
    if (values.empty() && row.derived) values = row.derived(data);
    if (!values.empty()) metadata.set(row.position, std::move(values));
  }
  return metadata;
}

}  // namespace pelmora::inspector
