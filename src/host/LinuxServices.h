#pragma once

#include "platform/players/PlayerState.h"
#include "platform/Services.h"

#include <functional>
#include <memory>
#include <optional>

namespace pelmora::host {

/// Which of the services a command chooses itself; what is null is the real one.
struct ServiceChoices {
  platform::Clock* clock = nullptr;
  platform::Scheduler* scheduler = nullptr;  // required by everything that runs views
  platform::Displays* displays = nullptr;    // required by everything that runs views
  platform::Sound* sound = nullptr;
  bool verbose = false;
  bool samplesWhenNoPictures = false;  // show painted samples to a user who has no pictures
  bool sessionBus = false;             // see the session's music players and notifications
  /// What seems to play, instead of what the session's players do.
  std::optional<platform::players::Track> track{};
  std::size_t enumerationConcurrency = 0;  // 0: the number of processors
  /// Where it is given the run is the session's saver: the desktop is listened to, and when it, or
  /// whoever else, says that the saver is to end, this is called, on main as a rule.
  std::function<void()> didStop{};
};

/// Owns the desktop's services, and hands them out. Thread: made on any, then as each service says.
class LinuxServices {
 public:
  explicit LinuxServices(const ServiceChoices& choices);
  ~LinuxServices();

  [[nodiscard]] const platform::Services& services() const;
  /// Gives up the picture that is being loaded, loads no other, and waits for no disk any more that
  /// does not answer: the run is about to end. Thread: any.
  void giveUpWaiting();

 private:
  struct Parts;
  std::unique_ptr<Parts> _parts;
};

}  // namespace pelmora::host
