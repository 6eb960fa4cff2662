#pragma once

#include "host/LinuxServices.h"
#include "host/OffscreenPresenter.h"
#include "host/SaverSession.h"
#include "PickTally.h"
#include "platform/SteppedTime.h"
#include "ProcessUse.h"
#include "SoakTree.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace pelmora::cards {
class PMFile;
}

namespace pelmora::soak {

/// The tallies of the four views; the preview's is the first.
using PickTallies = std::vector<PickTally>;

/// One run of the saver, of some hours around a midnight: three displays and a preview, of which
/// all pictures are loaded, drawn and animated as on a screen, on a clock that is stepped. Thread:
/// main. Ownership: the tree and the tallies outlive it.
class SoakDay {
 public:
  SoakDay(const SoakTree& tree, PickTallies& tallies, int day, int hours);
  ~SoakDay();
  SoakDay(const SoakDay&) = delete;
  SoakDay& operator=(const SoakDay&) = delete;

  /// What is wrong after it, a line each.
  [[nodiscard]] std::vector<std::string> run();
  [[nodiscard]] bool isFiltered() const { return _isFiltered; }
  /// What the process held before the end, the pictures on its screens not counted as heap.
  [[nodiscard]] const ProcessUse& use() const { return _use; }

  /// Cards that a view shows in one run, however long it is.
  static constexpr std::uint64_t kCards = 144;

 private:
  class ThreeDisplays : public platform::Displays {
   public:
    [[nodiscard]] std::vector<platform::Display> screens() const override;
  };

  void setPreferences();
  [[nodiscard]] std::vector<host::ViewPlace> places();
  void settle();
  void beginTallies();
  void countPicks();
  void runUntil(double mediaTime);
  void checkFolders(std::vector<std::string>& problems) const;
  void checkPicture(std::vector<std::string>& problems);
  /// What the pictures take that the views show: artwork, and what is drawn of it.
  [[nodiscard]] long pictureKilobytes() const;
  void checkCache(std::vector<std::string>& problems) const;

  const SoakTree& _tree;
  PickTallies& _tallies;
  const double _hours;
  const bool _isFiltered;
  platform::SteppedClock _clock;
  platform::SteppedScheduler _scheduler;
  ThreeDisplays _displays;
  host::LinuxServices _linux;
  std::vector<std::unique_ptr<host::OffscreenPresenter>> _presenters;
  std::unique_ptr<host::SaverSession> _session;
  std::vector<std::weak_ptr<cards::PMFile>> _lastCards;
  ProcessUse _use;
};

}  // namespace pelmora::soak
