#pragma once

#include "platform/linux/XdgBaseFolders.h"
#include "platform/UserFolders.h"

#include <utility>

namespace pelmora::platform {

/// The user's folders by the desktop's conventions. Everything is read anew at each call, so a
/// folder that the user moves is followed. Thread: any.
class XdgUserFolders : public UserFolders {
 public:
  explicit XdgUserFolders(Environment environment) : _environment(std::move(environment)) {}

  /// What `user-dirs.dirs` names, else Pictures in the home folder; only a folder that exists, and
  /// none when the user has switched it off (by naming the home folder itself).
  [[nodiscard]] std::vector<FilePath> pictures() const override;
  /// The cache folder, made for the user alone where it is missing; none if it cannot be made.
  [[nodiscard]] std::vector<FilePath> caches() const override;

 private:
  Environment _environment;
};

}  // namespace pelmora::platform
