#include "platform/fake/FakeServices.h"

namespace pelmora::platform {

Services FakeServices::services() {
  return {.clock = clock,
          .scheduler = scheduler,
          .log = log,
          .files = files,
          .userFolders = userFolders,
          .bookmarks = bookmarks,
          .preferences = preferences,
          .displays = displays,
          .workspace = workspace,
          .images = images,
          .metadata = metadata,
          .sound = sound,
          .notifications = notifications,
          .distributedNotifications = distributedNotifications,
          .runningApplications = runningApplications,
          .scripts = scripts};
}

}  // namespace pelmora::platform
