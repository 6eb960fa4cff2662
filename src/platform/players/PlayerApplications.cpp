#include "platform/players/PlayerApplications.h"

namespace pelmora::platform::players {

std::string playerIdentifier(const SystemVersion& version) {
  return version.major >= 11 || version.minor >= 15 ? "com.apple.Music" : "com.apple.iTunes";
}

std::vector<RunningApplication> PlayerApplications::runningApplications() const {
  if (!_players.isPlayerThere()) return {};
  return {{_identifier}};
}

}  // namespace pelmora::platform::players
