#include "platform/linux/FileTags.h"

#include "platform/PlainText.h"
#include "platform/PropertyList.h"

namespace pelmora::platform {

namespace {

void addTag(std::vector<std::string>& tags, std::string_view text) {
  std::string tag = plainText(text, kMaxTagBytes);
  if (!tag.empty() && tags.size() < kMaxTags) tags.push_back(std::move(tag));
}

}  // namespace

std::vector<std::string> tagsOfText(std::string_view value) {
  std::vector<std::string> tags;
  while (!value.empty() && tags.size() < kMaxTags) {
    const std::size_t end = value.find(',');
    addTag(tags, value.substr(0, end));
    value.remove_prefix(end == std::string_view::npos ? value.size() : end + 1);
  }
  return tags;
}

std::vector<std::string> tagsOfPropertyList(std::string_view value) {
  const plist::Bytes bytes(value.begin(), value.end());
  const Result<plist::Value> root = plist::read(bytes);
  const auto* names = root ? root->get<plist::Array>() : nullptr;
  std::vector<std::string> tags;
  if (!names) return tags;
  for (const plist::Value& item : *names) {
    if (tags.size() == kMaxTags) break;
    const auto* name = item.get<std::string>();
    if (name) addTag(tags, std::string_view(*name).substr(0, name->find('\n')));
  }
  return tags;
}

std::vector<std::string> tagsOfAttributes(
    const std::function<std::optional<std::string>(const char* name)>& value) {
  if (const auto text = value("user.xdg.tags")) {
    if (auto tags = tagsOfText(*text); !tags.empty()) return tags;
  }
  const auto list = value("user.com.apple.metadata:_kMDItemUserTags");
  return list ? tagsOfPropertyList(*list) : std::vector<std::string>();
}

}  // namespace pelmora::platform
