#include "host/LinuxServices.h"

#include "desktop/DistributedNotificationCenter.h"
#include "desktop/PlayerBridge.h"
#include "desktop/SessionBus.h"
#include "desktop/StopBridge.h"
#include "host/DecoderPath.h"
#include "host/IndexFile.h"
#include "host/ResourceFolder.h"
#include "host/SampleFolders.h"
#include "host/UserPaths.h"
#include "platform/linux/CurrentMounts.h"
#include "platform/linux/FilePreferencesStore.h"
#include "platform/linux/index/EmbeddedTags.h"
#include "platform/linux/index/MetadataIndex.h"
#include "platform/linux/index/MetadataInspector.h"
#include "platform/linux/IsolatedImageLoader.h"
#include "platform/linux/LinuxBookmarks.h"
#include "platform/linux/LinuxWorkspace.h"
#include "platform/linux/LogSound.h"
#include "platform/linux/PatientBookmarks.h"
#include "platform/linux/PatientFiles.h"
#include "platform/linux/PosixFiles.h"
#include "platform/linux/RemoteMounts.h"
#include "platform/linux/SystemClock.h"
#include "platform/linux/SystemLog.h"
#include "platform/linux/XdgBaseFolders.h"
#include "platform/linux/XdgUserFolders.h"
#include "platform/NotificationCenter.h"
#include "platform/players/PlayerApplications.h"
#include "platform/players/PlayerScripts.h"

#include <algorithm>
#include <cassert>
#include <optional>
#include <thread>

namespace pelmora::host {

namespace {

/// What the module's rules are to take this system for.
constexpr platform::SystemVersion kSystemVersion{};

std::unique_ptr<desktop::SessionBus> connectToSession(platform::Log& log) {
  const platform::Environment environment = platform::processEnvironment();
  return std::make_unique<desktop::SessionBus>(
      desktop::sessionBusAddress(environment("DBUS_SESSION_BUS_ADDRESS").value_or(""),
                                 environment("XDG_RUNTIME_DIR").value_or("")),
      log);
}

std::unique_ptr<desktop::SessionBus> connectToSystem(platform::Log& log) {
  return std::make_unique<desktop::SessionBus>(
      desktop::systemBusAddress(
          platform::processEnvironment()("DBUS_SYSTEM_BUS_ADDRESS").value_or("")),
      log, std::chrono::seconds(1), "The system's bus");
}

/// A player that plays one track, as long as it lasts.
class OneTrack : public platform::players::TrackSource {
 public:
  explicit OneTrack(std::optional<platform::players::Track> track) : _track(std::move(track)) {}
  [[nodiscard]] bool isPlayerThere() const override { return _track.has_value(); }
  [[nodiscard]] std::optional<platform::players::Track> currentTrack() override { return _track; }

 private:
  const std::optional<platform::players::Track> _track;
};

}  // namespace

struct LinuxServices::Parts {
  explicit Parts(const ServiceChoices& choices)
      : log(choices.verbose ? platform::SystemLog::StandardError::always
                            : platform::SystemLog::StandardError::whenTerminal),
        files(std::make_shared<platform::PosixFiles>(), remoteMounts, log),
        userFolders(platform::processEnvironment()),
        bookmarks(platform::makeLinuxBookmarks(mounts), files),
        preferences(platform::defaultPreferencesPath(), log),
        embeddedTags(inspectorPath(), clock, log, platform::EmbeddedTags::kDeadline, &files),
        workspace(
            labelsPath(), log, [this](const FilePath& file) { return embeddedTags.read(file); },
            &files),
        sound(log),
        samples(userFolders, samplesPath(), log),
        bus(choices.sessionBus ? connectToSession(log) : std::make_unique<desktop::SessionBus>()),
        distributedNotifications(*bus, *choices.scheduler),
        players(*bus, clock, distributedNotifications.inbox()),
        oneTrack(choices.track),
        runningApplications(tracksOf(choices), kSystemVersion),
        scripts(tracksOf(choices), kSystemVersion),
        metadata({.files = files,
                  .log = log,
                  .clock = clock,
                  .notifications = notifications,
                  .inspect = [this](auto open,
                                    const auto& take) { return inspector.inspect(open, take); },
                  .file = [this] { return indexFile(userFolders); }}),
        services{
            .clock = choices.clock ? *choices.clock : clock,
            .scheduler = *choices.scheduler,
            .log = log,
            .files = files,
            // Who has chosen folders needs no samples.
            .userFolders =
                choices.samplesWhenNoPictures && !preferences.storedValues().contains("Sources")
                    ? static_cast<platform::UserFolders&>(samples)
                    : userFolders,
            .bookmarks = bookmarks,
            .preferences = preferences,
            .displays = *choices.displays,
            .workspace = workspace,
            .images = images,
            .metadata = metadata,
            .sound = choices.sound ? *choices.sound : sound,
            .notifications = notifications,
            .distributedNotifications = distributedNotifications,
            .runningApplications = runningApplications,
            .scripts = scripts,
            .resourceFolder = resourceFolder(),
            .systemVersion = kSystemVersion,
            .enumerationConcurrency = choices.enumerationConcurrency > 0
                                          ? choices.enumerationConcurrency
                                          : std::max(1U, std::thread::hardware_concurrency()),
        } {
    if (choices.didStop) hearOfStop(choices.didStop);
  }

  void hearOfStop(const std::function<void()>& didStop) {
    systemBus = connectToSystem(log);
    stops.emplace(*bus, *systemBus, platform::processEnvironment()("XDG_SESSION_ID").value_or(""),
                  distributedNotifications.inbox());
    distributedNotifications.addObserver(desktop::kScreensaverDidStop,
                                         [didStop](const platform::Notification&) { didStop(); });
  }

  platform::players::TrackSource& tracksOf(const ServiceChoices& choices) {
    if (choices.track) return oneTrack;
    return players;
  }

  platform::SystemClock clock;
  platform::SystemLog log;
  std::shared_ptr<platform::CurrentMounts> mounts = std::make_shared<platform::CurrentMounts>();
  platform::RemoteMounts remoteMounts{mounts};
  platform::PatientFiles files;
  platform::XdgUserFolders userFolders;
  platform::PatientBookmarks bookmarks;
  platform::FilePreferencesStore preferences;
  platform::EmbeddedTags embeddedTags;
  platform::LinuxWorkspace workspace;
  platform::IsolatedImageLoader images{{.program = decoderPath(), .files = &files}};
  platform::LogSound sound;
  SampleFolders samples;
  platform::NotificationCenter notifications;
  const std::unique_ptr<desktop::SessionBus> bus;
  desktop::DistributedNotificationCenter distributedNotifications;
  desktop::PlayerBridge players;
  std::unique_ptr<desktop::SessionBus> systemBus;  // for the session's saver alone
  std::optional<desktop::StopBridge> stops;        // the same
  OneTrack oneTrack;
  platform::players::PlayerApplications runningApplications;
  platform::players::PlayerScripts scripts;
  platform::MetadataInspector inspector{{.program = inspectorPath()}};
  platform::MetadataIndex metadata;
  const platform::Services services;
};

LinuxServices::LinuxServices(const ServiceChoices& choices) {
  assert(choices.scheduler && choices.displays);
  _parts = std::make_unique<Parts>(choices);
}

LinuxServices::~LinuxServices() = default;

void LinuxServices::giveUpWaiting() {
  _parts->files.giveUp();
  _parts->images.giveUp();
}

const platform::Services& LinuxServices::services() const { return _parts->services; }

}  // namespace pelmora::host
