#include "platform/linux/ExtendedAttribute.h"

#include <linux/limits.h>
#include <sys/xattr.h>

namespace pelmora::platform {

std::optional<std::string> extendedAttribute(const FilePath& file, const char* name) {
  char value[XATTR_SIZE_MAX];
  const ssize_t size = ::getxattr(file.c_str(), name, value, sizeof value);
  if (size < 0) return std::nullopt;
  return std::string(value, static_cast<std::size_t>(size));
}

}  // namespace pelmora::platform
