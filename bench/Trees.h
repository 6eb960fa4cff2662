#pragma once

#include "shared/FilePath.h"

#include <string>

namespace pelmora::bench {

/// A folder of the benchmark's own under the temporary folder, removed at the end.
class Workplace {
 public:
  Workplace();
  ~Workplace();
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;

  [[nodiscard]] const FilePath& path() const { return _path; }
  FilePath mkdir(const std::string& name) const;

 private:
  FilePath _path;
};

/// Files spread over folders, `filesInEach` in each, folders a hundred to a parent, named as
/// cameras name them. They are empty, or each is the given picture (by hard links to a few copies
/// of it).
void makeTree(const FilePath& root, int folders, int filesInEach, const FilePath& picture = {});

/// The name of the n-th file of a folder: "IMG_0001.JPG", or one that no other folder has.
[[nodiscard]] std::string cameraName(int n);

}  // namespace pelmora::bench
