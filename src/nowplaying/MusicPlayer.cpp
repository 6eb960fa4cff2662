#include "nowplaying/MusicPlayer.h"

#include "platform/FileContents.h"
#include "platform/RunningApplications.h"

#include <strings.h>

#include <algorithm>
#include <string>

namespace pelmora::nowplaying {

namespace {

constexpr std::size_t kLongestScript = 64 << 10;  // bytes

struct Player {
  const char* bundleIdentifier;
  const char* script;
};

constexpr Player kMusic{"com.apple.Music", "GetCurrentTrackInfo-Music"};
constexpr Player kITunes{"com.apple.iTunes", "GetCurrentTrackInfo-iTunes"};

const Player& playerOf(const platform::SystemVersion& version) {
  return version.major >= 11 || version.minor >= 15 ? kMusic : kITunes;
}

}  // namespace

bool isMusicPlayerRunning(const platform::Services& services) {
  const Player& player = playerOf(services.systemVersion);
  const auto applications = services.runningApplications.runningApplications();
  return std::any_of(
      applications.begin(), applications.end(), [&](const platform::RunningApplication& each) {
        return each.bundleIdentifier &&
               strcasecmp(each.bundleIdentifier->c_str(), player.bundleIdentifier) == 0;
      });
}

platform::ScriptResult runTrackScript(const platform::Services& services) {
  const Player& player = playerOf(services.systemVersion);
  const FilePath file = services.resourceFolder / (std::string(player.script) + ".txt");
  const auto script = platform::FileContents::read(file, kLongestScript);
  if (!script) return {};
  const auto bytes = script->bytes();
  return services.scripts.execute({bytes.begin(), bytes.end()});
}

}  // namespace pelmora::nowplaying
