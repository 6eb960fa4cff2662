#include "host/PreferenceTools.h"

#include "host/UserPaths.h"
#include "view/ModuleDefaults.h"

namespace pelmora::host {

PreferenceTools::PreferenceTools()
    : userFolders(platform::processEnvironment()),
      bookmarks(clock),
      preferences(preferencesPath(), log) {
  preferences.registerDefaults(view::moduleDefaults(userFolders, bookmarks));
}

}  // namespace pelmora::host
