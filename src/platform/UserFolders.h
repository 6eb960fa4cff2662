#pragma once

#include "shared/FilePath.h"

#include <vector>

namespace pelmora::platform {

/// Where the user's folders of each kind are; the lists may be empty. Thread: any.
class UserFolders {
 public:
  virtual ~UserFolders() = default;
  [[nodiscard]] virtual std::vector<FilePath> pictures() const = 0;
  [[nodiscard]] virtual std::vector<FilePath> caches() const = 0;
};

}  // namespace pelmora::platform
