#include "platform/linux/XdgUserFolders.h"

#include "platform/linux/MakeFolders.h"
#include "platform/linux/SmallFile.h"
#include "platform/linux/UserDirectories.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace pelmora::platform {

namespace {

constexpr std::size_t kMaxUserDirectoriesBytes = 64 * 1024;

bool isExistingFolder(const FilePath& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::vector<FilePath> onlyIf(bool there, const FilePath& folder) {
  return there ? std::vector{folder} : std::vector<FilePath>();
}

}  // namespace

std::vector<FilePath> XdgUserFolders::pictures() const {
  const std::optional<FilePath> home = homeFolder(_environment);
  const std::optional<FilePath> config = configFolder(_environment);
  if (!home || !config) return {};
  const FilePath list = *config / "user-dirs.dirs";
  const Result<std::string> text = readSmallFile(AT_FDCWD, list.c_str(), kMaxUserDirectoriesBytes);
  const std::optional<FilePath> named =
      text ? userDirectory(*text, "XDG_PICTURES_DIR", *home) : std::nullopt;
  if (named == home) return {};
  const FilePath folder = named.value_or(*home / "Pictures");
  return onlyIf(isExistingFolder(folder), folder);
}

std::vector<FilePath> XdgUserFolders::caches() const {
  const std::optional<FilePath> folder = cacheFolder(_environment);
  if (!folder) return {};
  const bool isMade = makeFolders(*folder).ok();
  return onlyIf(isMade && isExistingFolder(*folder), *folder);
}

}  // namespace pelmora::platform
