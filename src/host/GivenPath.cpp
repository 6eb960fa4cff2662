#include "host/GivenPath.h"

#include <filesystem>
#include <system_error>

namespace pelmora::host {

namespace {

namespace fs = std::filesystem;

/// The path from the root on, by one way for each folder. A link at its end stays what it is.
FilePath withoutDetours(const fs::path& path) {
  std::error_code problem;
  const fs::path name = path.filename();
  const bool isFolderItself = name.empty() || name == "." || name == "..";
  const fs::path absolute =
      isFolderItself
          ? fs::canonical(path, problem)
          : fs::canonical(path.has_parent_path() ? path.parent_path() : ".", problem) / name;
  return FilePath(problem ? fs::absolute(path, problem).string() : absolute.string());
}

}  // namespace

GivenPath::GivenPath(const std::string& word) : _given(word), _absolute(withoutDetours(word)) {}

std::string GivenPath::shown(const FilePath& path) const {
  if (path == _absolute) return _given.bytes();
  const std::string& start = _absolute.bytes();
  const std::string below = start.ends_with('/') ? start : start + '/';
  if (!path.bytes().starts_with(below)) return path.bytes();
  return (_given / path.bytes().substr(below.size())).bytes();
}

}  // namespace pelmora::host
