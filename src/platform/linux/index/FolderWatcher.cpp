#include "platform/linux/index/FolderWatcher.h"

#include "platform/linux/index/InotifyQueue.h"
#include "platform/linux/index/LocalStorage.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

namespace pelmora::platform {

struct FolderWatcher::State {
  struct Folder;
  /// A path and what is known of it; it stays where it is.
  using Entry = std::pair<const FilePath, Folder>;
  /// What is due, the next first; each folder once at most.
  using Due = std::multimap<Seconds, Entry*>;

  struct Folder {
    std::optional<InotifyQueue::Watch> watch;
    bool isPolled = false;
    Seconds took = 0;         // the last look, while it is polled
    bool hasChanged = false;  // and is due for that, not to be polled
    std::optional<Due::iterator> due;
  };

  void renew(Entry& entry);
  void setWatch(Entry& entry, std::optional<InotifyQueue::Watch> watch);
  void setPolled(Folder& folder, bool isPolled, Seconds took);
  void release(InotifyQueue::Watch watch, Seconds now);
  void take(const InotifyQueue::Event& event, Seconds now);
  void hasChanged(Entry& entry, Seconds now);
  void hasLost(Seconds now);
  void dueBy(Entry& entry, Seconds moment);
  void notDue(Folder& folder);

  std::size_t mostWatches = 0;
  Answers answers;
  InotifyQueue queue;
  std::unordered_map<FilePath, Folder> folders;
  std::unordered_multimap<InotifyQueue::Watch, Entry*> byWatch;
  Due due;
  std::optional<Seconds> everythingDue;
  Seconds lost = 0;       // when events were, last
  Seconds lostQuiet = 0;  // how long was waited then; 0: never
  std::size_t polled = 0;
  Seconds pollingTakes = 0;  // for all that are polled, once
};

/// Watches what is found at the path now, and polls it where that is not enough.
void FolderWatcher::State::renew(Entry& entry) {
  auto& [path, folder] = entry;
  if (!answers(path)) {
    setWatch(entry, std::nullopt);
    return setPolled(folder, true, folder.took);
  }
  const bool mayBeAdded = folder.watch || byWatch.size() < mostWatches;
  setWatch(entry, mayBeAdded ? queue.add(path) : std::nullopt);
  setPolled(folder, !folder.watch || !isOnLocalStorage(path), folder.took);
}

void FolderWatcher::State::setPolled(Folder& folder, bool isPolled, Seconds took) {
  if (folder.isPolled) --polled;
  if (isPolled) ++polled;
  folder.isPolled = isPolled;
  pollingTakes -= folder.took;
  folder.took = isPolled ? took : 0;
  pollingTakes = polled > 0 ? pollingTakes + folder.took : 0;
}

void FolderWatcher::State::setWatch(Entry& entry, std::optional<InotifyQueue::Watch> watch) {
  std::optional<InotifyQueue::Watch>& held = entry.second.watch;
  if (held == watch) return;
  if (held) {
    const auto [first, last] = byWatch.equal_range(*held);
    byWatch.erase(
        std::find_if(first, last, [&](const auto& user) { return user.second == &entry; }));
    if (!byWatch.contains(*held)) queue.remove(*held);
  }
  if (watch) byWatch.emplace(*watch, &entry);
  held = watch;
}

/// The folder is no longer where its paths say, which are polled from now on.
void FolderWatcher::State::release(InotifyQueue::Watch watch, Seconds now) {
  for (auto user = byWatch.find(watch); user != byWatch.end(); user = byWatch.find(watch)) {
    Entry& entry = *user->second;
    setWatch(entry, std::nullopt);
    setPolled(entry.second, true, entry.second.took);
    hasChanged(entry, now);
  }
}

void FolderWatcher::State::take(const InotifyQueue::Event& event, Seconds now) {
  switch (event.kind) {
    case InotifyQueue::Kind::changed: {
      const auto [first, last] = byWatch.equal_range(event.watch);
      for (auto user = first; user != last; ++user) hasChanged(*user->second, now);
      break;
    }
    case InotifyQueue::Kind::moved:
    case InotifyQueue::Kind::gone:
      release(event.watch, now);
      break;
    case InotifyQueue::Kind::lost:
      hasLost(now);
      break;
  }
}

/// Where everything changes all the time, to look at everything all the time would be of no use.
void FolderWatcher::State::hasLost(Seconds now) {
  constexpr Seconds kForgotten = 10 * kLongestQuiet;
  const bool isRepeated = lostQuiet > 0 && now - lost < kForgotten;
  lost = now;
  if (everythingDue) return;
  lostQuiet = isRepeated ? std::min(2 * lostQuiet, kLongestQuiet) : kQuiet;
  everythingDue = now + lostQuiet;
}

void FolderWatcher::State::hasChanged(Entry& entry, Seconds now) {
  entry.second.hasChanged = true;
  dueBy(entry, now + kQuiet);
}

/// At that moment, if it isn't due before.
void FolderWatcher::State::dueBy(Entry& entry, Seconds moment) {
  std::optional<Due::iterator>& its = entry.second.due;
  if (its && (*its)->first <= moment) return;
  notDue(entry.second);
  its = due.emplace(moment, &entry);
}

void FolderWatcher::State::notDue(Folder& folder) {
  if (folder.due) due.erase(*folder.due);
  folder.due.reset();
}

FolderWatcher::FolderWatcher(std::size_t mostWatches, Answers answers)
    : _state(std::make_unique<State>()) {
  _state->mostWatches = mostWatches;
  _state->answers = std::move(answers);
}

FolderWatcher::~FolderWatcher() = default;

FolderWatcher::Watching FolderWatcher::watch(const FilePath& folder, Seconds now) {
  const auto [place, isNew] = _state->folders.try_emplace(folder);
  if (isNew) {
    _state->renew(*place);
    if (place->second.isPolled) _state->dueBy(*place, now + kShortestPause);
  }
  return place->second.isPolled ? Watching::byPolling : Watching::byEvents;
}

void FolderWatcher::unwatch(const FilePath& folder) {
  const auto place = _state->folders.find(folder);
  if (place == _state->folders.end()) return;
  _state->setWatch(*place, std::nullopt);
  _state->setPolled(place->second, false, 0);
  _state->notDue(place->second);
  _state->folders.erase(place);
}

std::size_t FolderWatcher::watchedFolders() const { return _state->folders.size(); }

std::size_t FolderWatcher::polledFolders() const { return _state->polled; }

int FolderWatcher::descriptor() const { return _state->queue.descriptor(); }

FolderWatcher::Changes FolderWatcher::changes(Seconds now) {
  State& state = *_state;
  state.queue.read([&](const InotifyQueue::Event& event) { state.take(event, now); });
  Changes changes;
  if (state.everythingDue && *state.everythingDue <= now) {
    state.everythingDue.reset();
    changes.everythingMayHaveChanged = true;
    // That a folder went may be among what was lost.
    for (auto& entry : state.folders) state.renew(entry);
  }
  while (!state.due.empty() && state.due.begin()->first <= now) {
    State::Entry& entry = *state.due.begin()->second;
    state.notDue(entry.second);
    entry.second.hasChanged = false;
    if (entry.second.isPolled) state.renew(entry);
    changes.folders.push_back(entry.first);
  }
  return changes;
}

std::optional<FolderWatcher::Seconds> FolderWatcher::nextDue() const {
  std::optional<Seconds> next = _state->everythingDue;
  if (_state->due.empty()) return next;
  const Seconds first = _state->due.begin()->first;
  return next ? std::min(*next, first) : first;
}

void FolderWatcher::hasPolled(const FilePath& folder, Seconds now, Seconds took) {
  constexpr double kPausesPerLook = 50;
  const auto place = _state->folders.find(folder);
  if (place == _state->folders.end() || !place->second.isPolled) return;
  if (!place->second.hasChanged) _state->notDue(place->second);
  _state->setPolled(place->second, true, took > 0 ? std::min(took, kLongestPause) : 0);
  const auto count = static_cast<Seconds>(_state->polled);
  const Seconds longest = std::max(kLongestPause, kPausePerFolder * count);
  _state->dueBy(*place,
                now + std::clamp(kPausesPerLook * _state->pollingTakes, kShortestPause, longest));
}

void FolderWatcher::tellAt(const FilePath& folder, Seconds moment) {
  const auto place = _state->folders.find(folder);
  if (place != _state->folders.end()) _state->dueBy(*place, moment);
}

}  // namespace pelmora::platform
