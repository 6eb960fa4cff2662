#include "platform/linux/XdgBaseFolders.h"

#include <cstdlib>

namespace pelmora::platform {

namespace {

std::optional<FilePath> absolutePath(const Environment& environment, const char* variable) {
  std::optional<std::string> value = environment(variable);
  if (!value || !value->starts_with('/')) return std::nullopt;
  return FilePath(std::move(*value));
}

std::optional<FilePath> baseFolder(const Environment& environment, const char* variable,
                                   const char* nameAtHome) {
  if (const auto folder = absolutePath(environment, variable)) return folder;
  const std::optional<FilePath> home = homeFolder(environment);
  return home ? std::optional(*home / nameAtHome) : std::nullopt;
}

}  // namespace

Environment processEnvironment() {
  return [](const char* variable) -> std::optional<std::string> {
    const char* const value = std::getenv(variable);
    return value ? std::optional<std::string>(value) : std::nullopt;
  };
}

std::optional<FilePath> homeFolder(const Environment& environment) {
  return absolutePath(environment, "HOME");
}

std::optional<FilePath> configFolder(const Environment& environment) {
  return baseFolder(environment, "XDG_CONFIG_HOME", ".config");
}

std::optional<FilePath> cacheFolder(const Environment& environment) {
  return baseFolder(environment, "XDG_CACHE_HOME", ".cache");
}

}  // namespace pelmora::platform
