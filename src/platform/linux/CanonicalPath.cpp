#include "platform/linux/CanonicalPath.h"

#include <climits>
#include <cstdlib>

namespace pelmora::platform {

std::optional<FilePath> canonicalPath(const FilePath& path) {
  char buffer[PATH_MAX];
  if (!::realpath(path.c_str(), buffer)) return std::nullopt;
  return FilePath(buffer);
}

}  // namespace pelmora::platform
