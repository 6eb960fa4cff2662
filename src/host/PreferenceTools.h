#pragma once

#include "platform/linux/CurrentMounts.h"
#include "platform/linux/FilePreferencesStore.h"
#include "platform/linux/PatientBookmarks.h"
#include "platform/linux/PatientFiles.h"
#include "platform/linux/RemoteMounts.h"
#include "platform/linux/SystemLog.h"
#include "platform/linux/XdgUserFolders.h"
#include "platform/PropertyList.h"

#include <memory>

namespace pelmora::host {

/// What the commands that edit preferences need, and no more. What goes wrong is said on standard
/// error too. The registered defaults are in place, so that a key that was never written reads as
/// the saver reads it. Thread: main.
struct PreferenceTools {
  PreferenceTools();

  platform::SystemLog log;
  std::shared_ptr<platform::CurrentMounts> mounts = std::make_shared<platform::CurrentMounts>();
  platform::RemoteMounts remoteMounts{mounts};
  platform::PatientFiles files;
  platform::XdgUserFolders userFolders;
  platform::PatientBookmarks bookmarks;
  platform::FilePreferencesStore preferences;
};

}  // namespace pelmora::host
