#include "platform/metadata/FileMetadata.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace pelmora::platform::metadata {

namespace {

using predicate::Constant;

bool isOf(ValueType type, const Constant& value) {
  switch (type) {
    case ValueType::text:
      return value.get<std::string>() != nullptr;
    case ValueType::integer:
      return value.get<std::int64_t>() != nullptr;
    case ValueType::real: {
      const double* const number = value.get<double>();
      return number && std::isfinite(*number);
    }
    case ValueType::date: {
      const ReferenceTime* const date = value.get<ReferenceTime>();
      return date && std::isfinite(date->seconds);
    }
  }
  return false;
}

}  // namespace

void FileMetadata::set(std::size_t attribute, std::vector<Constant> values) {
  if (attribute >= attributeTable().size()) return;
  const Attribute& facts = attributeTable()[attribute];
  std::erase_if(values, [&facts](const Constant& value) { return !isOf(facts.type, value); });
  const std::size_t most = facts.hasSeveral ? kMaxValues : 1;
  if (values.size() > most) values.resize(most);
  if (values.empty()) {
    _values.erase(attribute);
  } else {
    _values[attribute] = std::move(values);
  }
}

void FileMetadata::set(std::string_view attribute, std::vector<Constant> values) {
  if (const std::optional<std::size_t> position = attributeNamed(attribute)) {
    set(*position, std::move(values));
  }
}

std::span<const Constant> FileMetadata::values(std::string_view attribute) const {
  const std::optional<std::size_t> position = attributeNamed(attribute);
  if (!position) return {};
  const auto found = _values.find(*position);
  if (found == _values.end()) return {};
  return found->second;
}

}  // namespace pelmora::platform::metadata
