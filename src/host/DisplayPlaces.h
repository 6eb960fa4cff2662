#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::host {

/// The order of displays, in which a display keeps its place as long as it is connected, whatever
/// comes and goes: what is chosen for the second display stays there. One that comes takes the
/// place that it had before, if that is free, else that of one that has gone, else a new one at the
/// end. Thread: any, one at a time.
class DisplayPlaces {
 public:
  /// A display as the window system knows it now.
  struct Screen {
    const void* handle;  // the same as long as it is connected
    std::string name;
  };
  struct Place {
    std::uint64_t id = 0;  // another for each display that ever had the place
    std::string name;
    const void* handle = nullptr;
    std::optional<std::size_t> screen;  // which of the last update's; nullopt when it has gone
  };

  void update(const std::vector<Screen>& screens);
  [[nodiscard]] const std::vector<Place>& places() const { return _places; }

 private:
  std::vector<Place> _places;
  std::uint64_t _nextId = 1;
};

}  // namespace pelmora::host
