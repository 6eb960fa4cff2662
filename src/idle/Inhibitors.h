#pragma once

#include "idle/Inhibitor.h"
#include "platform/Scheduler.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelmora::idle {

/// All inhibitors of the session.
/// Thread: main. Errors: one that does not answer counts as what it was.
class Inhibitors {
 public:
  /// Which bus one is heard of by.
  enum class Bus { session, system };

  /// How long all of them together may take to answer, in seconds.
  static constexpr double kPatience = 1.5;

  /// The scheduler outlives it. `changed` is called when one may have come or gone.
  Inhibitors(platform::Scheduler& scheduler, std::function<void()> changed);
  ~Inhibitors();
  Inhibitors(const Inhibitors&) = delete;
  Inhibitors& operator=(const Inhibitors&) = delete;

  void add(Bus bus, std::unique_ptr<Inhibitor> inhibitor);
  /// For those that were added: calls `changed`.
  void tellChanged() const { _changed(); }
  /// Nothing more is heard of those.
  void removeAll(Bus bus);

  [[nodiscard]] bool isAnyHeld() const;
  /// Who holds them: "Player (plays a film), the session".
  [[nodiscard]] std::string holders() const;
  /// Asks all of them, then calls `answered`. Asked again meanwhile, the first caller is forgotten.
  void ask(std::function<void()> answered);

 private:
  struct Entry {
    Bus bus;
    std::unique_ptr<Inhibitor> inhibitor;
  };
  struct Round;

  void endRound();

  platform::Scheduler& _scheduler;
  const std::function<void()> _changed;
  std::vector<Entry> _entries;
  std::shared_ptr<Round> _round;  // null when nothing is being asked
};

}  // namespace pelmora::idle
