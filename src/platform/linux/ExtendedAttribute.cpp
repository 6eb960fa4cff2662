#include "platform/linux/ExtendedAttribute.h"

#include <linux/limits.h>
#include <sys/xattr.h>

#include <algorithm>
#include <string_view>

namespace pelmora::platform {

namespace {

std::optional<std::string> text(const char* value, ssize_t size) {
  if (size < 0) return std::nullopt;
  return std::string(value, static_cast<std::size_t>(size));
}

}  // namespace

std::optional<std::string> extendedAttribute(const FilePath& file, const char* name) {
  char value[XATTR_SIZE_MAX];
  return text(value, ::getxattr(file.c_str(), name, value, sizeof value));
}

std::optional<std::string> extendedAttribute(int file, const char* name) {
  char value[XATTR_SIZE_MAX];
  return text(value, ::fgetxattr(file, name, value, sizeof value));
}

std::vector<std::string> extendedAttributeNames(int file) {
  char block[XATTR_LIST_MAX];
  const ssize_t size = ::flistxattr(file, block, sizeof block);
  std::vector<std::string> names;
  std::string_view rest(block, size < 0 ? 0 : static_cast<std::size_t>(size));
  while (!rest.empty()) {
    const std::string_view name = rest.substr(0, rest.find('\0'));
    if (name.starts_with("user.")) names.emplace_back(name);
    rest.remove_prefix(std::min(name.size() + 1, rest.size()));
  }
  return names;
}

}  // namespace pelmora::platform
