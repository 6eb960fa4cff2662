#include "config/ScreensValueTransformer.h"

#include <string_view>

namespace pelmora::config {

namespace {

constexpr std::string_view kStored = ",";
constexpr std::string_view kShown = ", ";

std::string replaced(std::string_view text, std::string_view what, std::string_view by) {
  std::string result;
  for (auto at = text.find(what); at != std::string_view::npos; at = text.find(what)) {
    result.append(text.substr(0, at)).append(by);
    text.remove_prefix(at + what.size());
  }
  return result.append(text);
}

}  // namespace

ScreensValueTransformer::Value ScreensValueTransformer::transformedValue(const Value& value) const {
  if (!value) return plist::Value(_all);
  const auto* stored = value->get<std::string>();
  if (!stored) return std::nullopt;
  return plist::Value(stored->empty() ? _all : replaced(*stored, kStored, kShown));
}

ScreensValueTransformer::Value ScreensValueTransformer::reverseTransformedValue(
    const Value& value) const {
  const auto* shown = value ? value->get<std::string>() : nullptr;
  if (!shown) return std::nullopt;
  return plist::Value(*shown == _all ? std::string() : replaced(*shown, kShown, kStored));
}

}  // namespace pelmora::config
