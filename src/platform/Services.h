#pragma once

#include "shared/FilePath.h"

#include <cstddef>

namespace pelmora::platform {

class Bookmarks;
class Clock;
class Displays;
class Files;
class ImageLoader;
class Log;
class MetadataSearch;
class NotificationCenter;
class PreferencesStore;
class RunningApplications;
class Scheduler;
class ScriptRunner;
class Sound;
class UserFolders;
class Workspace;

/// The version of the system, as the module's rules read it.
struct SystemVersion {
  int major = 11;
  int minor = 0;
};

/// Everything outside that the module uses, handed in by the host, which owns it all and keeps it
/// longer than any view or list.
struct Services {
  Clock& clock;
  Scheduler& scheduler;
  Log& log;
  Files& files;
  UserFolders& userFolders;
  Bookmarks& bookmarks;
  PreferencesStore& preferences;
  Displays& displays;
  Workspace& workspace;
  ImageLoader& images;
  MetadataSearch& metadata;
  Sound& sound;
  NotificationCenter& notifications;             // of this process
  NotificationCenter& distributedNotifications;  // of the user's session
  RunningApplications& runningApplications;
  ScriptRunner& scripts;
  FilePath resourceFolder{};  // of the files that come with the module
  SystemVersion systemVersion{};
  /// How many folders are walked at once: the number of processors; 1 makes the order of the
  /// records that of the queue, for runs that must repeat exactly.
  std::size_t enumerationConcurrency = 1;
};

/// The same services with other notifications of the process.
[[nodiscard]] inline Services withNotifications(const Services& services,
                                                NotificationCenter& notifications) {
  return {.clock = services.clock,
          .scheduler = services.scheduler,
          .log = services.log,
          .files = services.files,
          .userFolders = services.userFolders,
          .bookmarks = services.bookmarks,
          .preferences = services.preferences,
          .displays = services.displays,
          .workspace = services.workspace,
          .images = services.images,
          .metadata = services.metadata,
          .sound = services.sound,
          .notifications = notifications,
          .distributedNotifications = services.distributedNotifications,
          .runningApplications = services.runningApplications,
          .scripts = services.scripts,
          .resourceFolder = services.resourceFolder,
          .systemVersion = services.systemVersion,
          .enumerationConcurrency = services.enumerationConcurrency};
}

}  // namespace pelmora::platform
