#include "platform/PreferencesStore.h"

namespace pelmora::platform {

std::int64_t PreferencesStore::integerForKey(std::string_view key) const {
  const std::optional<plist::Value> value = objectForKey(key);
  return value ? value->integerValue() : 0;
}

double PreferencesStore::doubleForKey(std::string_view key) const {
  const std::optional<plist::Value> value = objectForKey(key);
  return value ? value->doubleValue() : 0;
}

std::optional<plist::Array> PreferencesStore::arrayForKey(std::string_view key) const {
  std::optional<plist::Value> value = objectForKey(key);
  auto* array = value ? value->get<plist::Array>() : nullptr;
  return array ? std::optional(std::move(*array)) : std::nullopt;
}

std::optional<plist::Dictionary> PreferencesStore::dictionaryForKey(std::string_view key) const {
  std::optional<plist::Value> value = objectForKey(key);
  auto* dictionary = value ? value->get<plist::Dictionary>() : nullptr;
  return dictionary ? std::optional(std::move(*dictionary)) : std::nullopt;
}

}  // namespace pelmora::platform
