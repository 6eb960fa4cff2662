#include "host/DisplayPlaces.h"

#include <algorithm>

namespace pelmora::host {

void DisplayPlaces::update(const std::vector<Screen>& screens) {
  for (Place& place : _places) place.screen.reset();
  std::vector<bool> isPlaced(screens.size());
  const auto take = [&](Place& place, std::size_t i) {
    place.handle = screens[i].handle;
    place.screen = i;
    isPlaced[i] = true;
  };
  for (Place& place : _places) {
    for (std::size_t i = 0; i < screens.size(); ++i) {
      const bool isSame = screens[i].handle == place.handle && screens[i].name == place.name;
      if (isSame && !isPlaced[i] && !place.screen) take(place, i);
    }
  }
  // Those that come back go before those that were never here, which would take their places.
  for (std::size_t i = 0; i < screens.size(); ++i) {
    if (isPlaced[i]) continue;
    const auto own = std::find_if(_places.begin(), _places.end(), [&](const Place& place) {
      return !place.screen && place.name == screens[i].name;
    });
    if (own != _places.end()) take(*own, i);
  }
  for (std::size_t i = 0; i < screens.size(); ++i) {
    if (isPlaced[i]) continue;
    auto free = std::find_if(_places.begin(), _places.end(),
                             [](const Place& place) { return !place.screen; });
    if (free == _places.end()) free = _places.insert(_places.end(), Place{});
    free->id = _nextId++;
    free->name = screens[i].name;
    take(*free, i);
  }
}

}  // namespace pelmora::host
