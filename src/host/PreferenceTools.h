#pragma once

#include "platform/linux/FilePreferencesStore.h"
#include "platform/linux/LinuxBookmarks.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/SystemLog.h"
#include "platform/linux/XdgUserFolders.h"
#include "platform/PropertyList.h"

namespace pelmora::host {

/// What the commands that edit preferences need, and no more. What goes wrong is said on standard
/// error too. The registered defaults are in place, so that a key that was never written reads as
/// the saver reads it. Thread: main.
struct PreferenceTools {
  PreferenceTools();

  platform::SystemClock clock;
  platform::SystemLog log;
  platform::PosixFiles files;
  platform::XdgUserFolders userFolders;
  platform::LinuxBookmarks bookmarks;
  platform::FilePreferencesStore preferences;
};

}  // namespace pelmora::host
