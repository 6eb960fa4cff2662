#pragma once

#include "platform/fake/CountingFiles.h"
#include "platform/fake/FakeBookmarks.h"
#include "platform/fake/FakeDisplays.h"
#include "platform/fake/FakeImageLoader.h"
#include "platform/fake/FakeMetadataSearch.h"
#include "platform/fake/FakeRunningApplications.h"
#include "platform/fake/FakeScriptRunner.h"
#include "platform/fake/FakeSound.h"
#include "platform/fake/FakeUserFolders.h"
#include "platform/fake/FakeWorkspace.h"
#include "platform/fake/MemoryPreferencesStore.h"
#include "platform/fake/RecordingLog.h"
#include "platform/linux/PosixFiles.h"
#include "platform/NotificationCenter.h"
#include "platform/Services.h"
#include "platform/SteppedTime.h"

namespace pelmora::platform {

/// One of each service, for tests of what uses them. Files are the real ones, counted. The wall
/// clock starts at noon of Saturday, 2026-11-21, in Universal Time. Thread: main is the thread that
/// makes it. Everything that got `services()` must be gone before it.
struct FakeServices {
  SteppedClock clock{ReferenceTime::fromPosix(1795262400, 0)};
  SteppedScheduler scheduler{clock};
  RecordingLog log;
  PosixFiles posixFiles;
  CountingFiles files{posixFiles};
  FakeUserFolders userFolders;
  FakeBookmarks bookmarks;
  MemoryPreferencesStore preferences;
  FakeDisplays displays;
  FakeWorkspace workspace;
  FakeImageLoader images;
  FakeMetadataSearch metadata;
  FakeSound sound;
  NotificationCenter notifications;
  NotificationCenter distributedNotifications;
  FakeRunningApplications runningApplications;
  FakeScriptRunner scripts;

  /// References to the above. Made anew by each call, so it can be changed before it is handed on.
  [[nodiscard]] Services services();
};

}  // namespace pelmora::platform
