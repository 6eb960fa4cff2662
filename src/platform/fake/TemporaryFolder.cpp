#include "platform/fake/TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace pelmora::platform {

namespace {

namespace fs = std::filesystem;

FilePath makeUniqueFolder() {
  std::string name = (fs::canonical(fs::temp_directory_path()) / "pelmora-XXXXXX").string();
  if (!::mkdtemp(name.data())) throw std::system_error(errno, std::generic_category(), name);
  return FilePath(name);
}

FilePath makeFoldersAbove(FilePath path) {
  fs::create_directories(path.parent().bytes());
  return path;
}

/// A test may have taken its own right to a folder away, which would keep it from being removed.
void makeRemovable(const fs::path& folder) {
  std::error_code ignored;
  fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
  for (fs::recursive_directory_iterator entry(folder, ignored), end; !ignored && entry != end;
       entry.increment(ignored)) {
    if (entry->symlink_status(ignored).type() == fs::file_type::directory) {
      fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
  }
}

}  // namespace

TemporaryFolder::TemporaryFolder() : _path(makeUniqueFolder()) {}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  makeRemovable(_path.bytes());
  fs::remove_all(_path.bytes(), ignored);
}

FilePath TemporaryFolder::write(std::string_view name, std::string_view bytes) const {
  FilePath path = makeFoldersAbove(_path / name);
  std::ofstream file(path.bytes(), std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::system_error(errno, std::generic_category(), path.bytes());
  return path;
}

FilePath TemporaryFolder::mkdir(std::string_view name) const {
  FilePath path = _path / name;
  fs::create_directories(path.bytes());
  return path;
}

FilePath TemporaryFolder::link(std::string_view name, std::string_view target) const {
  FilePath path = makeFoldersAbove(_path / name);
  fs::create_symlink(target, path.bytes());
  return path;
}

FilePath TemporaryFolder::link(std::string_view name, const FilePath& target) const {
  return link(name, std::string_view(target.bytes()));
}

}  // namespace pelmora::platform
