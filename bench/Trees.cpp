#include "Trees.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace pelmora::bench {

namespace {
constexpr int kFoldersInAParent = 100;
constexpr int kFoldersOfACopy = 500;  // a file system allows some 65,000 links to a file

FilePath copyOf(const FilePath& picture, const FilePath& root, int number) {
  const FilePath copy = root / (".copy" + std::to_string(number));
  std::filesystem::copy_file(picture.bytes(), copy.bytes());
  return copy;
}

}  // namespace

Workplace::Workplace() {
  std::string pattern = (std::filesystem::temp_directory_path() / "pelmora-bench-XXXXXX").string();
  if (!mkdtemp(pattern.data())) {
    std::perror("the benchmark's folder cannot be made");
    std::exit(1);
  }
  _path = FilePath(pattern);
}

Workplace::~Workplace() {
  std::error_code ignored;
  std::filesystem::remove_all(_path.bytes(), ignored);
}

FilePath Workplace::mkdir(const std::string& name) const {
  const FilePath folder = _path / name;
  ::mkdir(folder.c_str(), 0700);
  return folder;
}

std::string cameraName(int n) {
  char name[32];
  std::snprintf(name, sizeof name, "IMG_%04d.JPG", n);
  return name;
}

void makeTree(const FilePath& root, int folders, int filesInEach, const FilePath& picture) {
  FilePath copy;
  for (int i = 0; i < folders; ++i) {
    if (!picture.empty() && i % kFoldersOfACopy == 0) copy = copyOf(picture, root, i);
    const FilePath parent = root / ("year" + std::to_string(i / kFoldersInAParent));
    if (i % kFoldersInAParent == 0) mkdir(parent.c_str(), 0700);
    const FilePath folder = parent / ("event " + std::to_string(i % kFoldersInAParent));
    mkdir(folder.c_str(), 0700);
    for (int n = 0; n < filesInEach; ++n) {
      const FilePath file = folder / cameraName(n);
      if (picture.empty()) {
        close(open(file.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
      } else if (link(copy.c_str(), file.c_str()) != 0) {
        std::perror(file.c_str());
        std::exit(1);
      }
    }
  }
}

}  // namespace pelmora::bench
