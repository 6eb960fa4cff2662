#pragma once

#include "shared/FilePath.h"

#include <functional>
#include <optional>
#include <string>

namespace pelmora::platform {

/// A look into the environment: the variable's value, nullopt where it is not set.
using Environment = std::function<std::optional<std::string>(const char* variable)>;

/// The environment of this process.
[[nodiscard]] Environment processEnvironment();

/// Where the user's files of each kind are; the folders need not exist. Values that are empty or no
/// absolute path count as not set; nullopt when nothing that tells the folder is set.
[[nodiscard]] std::optional<FilePath> homeFolder(const Environment& environment);
/// XDG_CONFIG_HOME, else .config in the home folder.
[[nodiscard]] std::optional<FilePath> configFolder(const Environment& environment);
/// XDG_CACHE_HOME, else .cache in the home folder.
[[nodiscard]] std::optional<FilePath> cacheFolder(const Environment& environment);

}  // namespace pelmora::platform
