#include "host/PreferenceTools.h"

#include "view/ModuleDefaults.h"

namespace pelmora::host {

PreferenceTools::PreferenceTools()
    : log(platform::SystemLog::StandardError::always),
      userFolders(platform::processEnvironment()),
      bookmarks(clock),
      preferences(platform::defaultPreferencesPath(), log) {
  preferences.registerDefaults(view::moduleDefaults(userFolders, bookmarks));
}

}  // namespace pelmora::host
