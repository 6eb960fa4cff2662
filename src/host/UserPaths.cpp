#include "host/UserPaths.h"

#include "platform/linux/XdgBaseFolders.h"

namespace pelmora::host {

namespace {

const FilePath kNoHome("/nonexistent");

FilePath configFolder() {
  return platform::configFolder(platform::processEnvironment()).value_or(kNoHome) / "Pelmora";
}

}  // namespace

FilePath labelsPath() { return configFolder() / "labels"; }

FilePath samplesPath() {
  const auto caches = platform::cacheFolder(platform::processEnvironment());
  return caches.value_or(kNoHome) / "Pelmora" / "Sample Pictures";
}

}  // namespace pelmora::host
