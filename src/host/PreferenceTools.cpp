#include "host/PreferenceTools.h"

#include "platform/linux/LinuxBookmarks.h"
#include "platform/linux/PosixFiles.h"
#include "view/ModuleDefaults.h"

namespace pelmora::host {

PreferenceTools::PreferenceTools()
    : log(platform::SystemLog::StandardError::always),
      files(std::make_shared<platform::PosixFiles>(), remoteMounts, log),
      userFolders(platform::processEnvironment()),
      bookmarks(platform::makeLinuxBookmarks(mounts), files),
      preferences(platform::defaultPreferencesPath(), log) {
  preferences.registerDefaults(view::moduleDefaults(userFolders, bookmarks));
}

}  // namespace pelmora::host
