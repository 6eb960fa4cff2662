#include "platform/linux/index/FrequentTexts.h"

#include "platform/linux/index/StoreSchema.h"
#include "platform/UnicodeText.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace pelmora::platform {

namespace {

/// How many files have each text.
using Counts = std::unordered_map<std::string, std::size_t>;

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F;
}

bool canBeTyped(const std::string& text) {
  return !text.empty() && text.size() <= kLongestFrequentText &&
         std::none_of(text.begin(), text.end(), isControl) && plist::isUtf8(text);
}

SqliteStatement prepareValues(StoreConnection& connection, std::size_t attribute,
                              std::size_t mostFiles) {
  const std::string newest = " ORDER BY files.id DESC LIMIT " + std::to_string(mostFiles);
  if (isPath(attribute)) {
    // In this order, so that nothing has to be sorted.
    return connection.database.prepare(
        "SELECT path FROM files CROSS JOIN folders ON folders.id = folder" + newest);
  }
  const std::string column = expressionOf(attribute, TextForm::raw);
  return connection.database.prepare("SELECT " + column + " FROM files WHERE " + column +
                                     " IS NOT NULL" + newest);
}

void count(std::string text, Counts& counts, std::size_t mostTexts) {
  if (!canBeTyped(text)) return;
  if (counts.size() < mostTexts) {
    ++counts[std::move(text)];
  } else if (const auto found = counts.find(text); found != counts.end()) {
    ++found->second;
  }
}

std::vector<std::string> mostFrequent(const Counts& counts, std::size_t most) {
  std::vector<Counts::const_pointer> order;
  order.reserve(counts.size());
  for (const auto& entry : counts) order.push_back(&entry);
  const auto end = order.begin() + static_cast<std::ptrdiff_t>(std::min(most, order.size()));
  std::partial_sort(order.begin(), end, order.end(), [](const auto* one, const auto* other) {
    return one->second != other->second ? one->second > other->second : one->first < other->first;
  });
  std::vector<std::string> texts;
  for (auto entry = order.begin(); entry != end; ++entry) texts.push_back((*entry)->first);
  return texts;
}

}  // namespace

std::vector<std::string> frequentTexts(StoreConnection& connection, std::size_t attribute,
                                       std::size_t most, const std::function<bool()>& isOver,
                                       const CountingLimits& limits) {
  const auto table = metadata::attributeTable();
  if (attribute >= table.size() || table[attribute].type != metadata::ValueType::text) return {};
  SqliteStatement statement = prepareValues(connection, attribute, limits.files);
  auto row = statement.execute();
  Counts counts;
  while (!isOver() && row.step()) {
    for (const predicate::Constant& value : valuesIn(row.value(0), attribute)) {
      const auto* text = value.get<std::string>();
      if (!text) continue;
      const bool lacksSlash = isPath(attribute) && !text->ends_with('/');
      count(lacksSlash ? *text + '/' : *text, counts, limits.texts);
    }
  }
  return mostFrequent(counts, most);
}

}  // namespace pelmora::platform
