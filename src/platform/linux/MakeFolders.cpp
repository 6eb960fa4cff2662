#include "platform/linux/MakeFolders.h"

#include "platform/SystemError.h"

#include <sys/stat.h>

#include <cerrno>

namespace pelmora::platform {

namespace {

/// 0, or the error number. What is there already is as good as made.
int makeFolder(const FilePath& folder) {
  return ::mkdir(folder.c_str(), 0700) == 0 || errno == EEXIST ? 0 : errno;
}

}  // namespace

Status makeFolders(const FilePath& folder) {
  int error = makeFolder(folder);
  if (error == ENOENT && folder != folder.parent()) {
    if (Status above = makeFolders(folder.parent()); !above) return above;
    error = makeFolder(folder);
  }
  if (error != 0) return systemError(folder, error);
  return Done{};
}

}  // namespace pelmora::platform
