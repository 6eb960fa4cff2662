#pragma once

#include "platform/UserFolders.h"

namespace pelmora::platform {

/// User folders that a test chooses; none at first. Thread: any, once chosen.
class FakeUserFolders : public UserFolders {
 public:
  [[nodiscard]] std::vector<FilePath> pictures() const override { return picturesFolders; }
  [[nodiscard]] std::vector<FilePath> caches() const override { return cachesFolders; }

  std::vector<FilePath> picturesFolders;
  std::vector<FilePath> cachesFolders;
};

}  // namespace pelmora::platform
