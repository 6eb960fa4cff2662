#include "idle/Inhibitors.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace pelmora::idle {

/// One time that all are asked. Answers to a round that is over find it gone.
struct Inhibitors::Round {
  std::size_t open = 0;
  std::function<void()> answered;
  platform::Scheduler::TimerId limit{};
};

Inhibitors::Inhibitors(platform::Scheduler& scheduler, std::function<void()> changed)
    : _scheduler(scheduler), _changed(std::move(changed)) {}

Inhibitors::~Inhibitors() {
  if (_round) _scheduler.cancel(_round->limit);
}

void Inhibitors::add(Bus bus, std::unique_ptr<Inhibitor> inhibitor) {
  _entries.push_back({bus, std::move(inhibitor)});
  _entries.back().inhibitor->ask([] {});
}

void Inhibitors::removeAll(Bus bus) {
  std::erase_if(_entries, [bus](const Entry& entry) { return entry.bus == bus; });
  _changed();
}

bool Inhibitors::isAnyHeld() const {
  return std::any_of(_entries.begin(), _entries.end(),
                     [](const Entry& entry) { return entry.inhibitor->isHeld(); });
}

std::string Inhibitors::holders() const {
  std::string text;
  for (const Entry& entry : _entries) {
    if (!entry.inhibitor->isHeld()) continue;
    if (!text.empty()) text += ", ";
    text += entry.inhibitor->holder();
  }
  return text;
}

void Inhibitors::ask(std::function<void()> answered) {
  if (_round) _scheduler.cancel(_round->limit);
  // One more than there are, so that answers at once do not end it too early.
  _round = std::make_shared<Round>(Round{_entries.size() + 1, std::move(answered), {}});
  _round->limit = _scheduler.after(kPatience, [this] { endRound(); });
  const std::weak_ptr<Round> round = _round;
  const auto count = [this, round] {
    const auto current = round.lock();
    if (current && current == _round && --current->open == 0) endRound();
  };
  for (const Entry& entry : _entries) entry.inhibitor->ask(count);
  count();
}

void Inhibitors::endRound() {
  const auto round = std::exchange(_round, nullptr);
  if (!round) return;
  _scheduler.cancel(round->limit);
  round->answered();
}

}  // namespace pelmora::idle
