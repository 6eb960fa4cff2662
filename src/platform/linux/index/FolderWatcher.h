#pragma once

#include "shared/FilePath.h"

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace pelmora::platform {

/// Tells in which folders something changed: a file came, went, was written or renamed, or had its
/// attributes changed. By inotify; where that has no watches left, cannot be had, or the folder is
/// on a file system that others change too (another machine's, or a program's), the folder is to be
/// polled, and this says when. Changes come in batches: a folder is told a moment (`kQuiet`) after
/// its first change, and once for many. Thread: one. Units: seconds of a clock that never goes
/// back, which the caller reads. Errors: a folder that cannot be watched is polled; one log line is
/// the caller's to write (`polledFolders`).
///
/// Links on the way to a folder are followed when it is watched, and paths that lead to the same
/// folder are all told. A folder that is removed or renamed is told once more, and then polled
/// until one is found there again. Not seen: that a folder above is renamed, a link leads
/// elsewhere, or something is mounted there; and what is written through another name of a file, in
/// another folder.
class FolderWatcher {
 public:
  using Seconds = double;
  /// How long changes are collected before they are told.
  static constexpr Seconds kQuiet = 0.25;
  /// The same after events were lost, when they are lost time and again.
  static constexpr Seconds kLongestQuiet = 60;
  /// The shortest and the longest time until a polled folder is due again; of many folders, the
  /// longest is `kPausePerFolder` for each.
  static constexpr Seconds kShortestPause = 5;
  static constexpr Seconds kLongestPause = 300;
  static constexpr Seconds kPausePerFolder = 2;

  /// What became of it when a folder was to be watched.
  enum class Watching { byEvents, byPolling };

  /// Whether a folder is there and can be looked at without hanging.
  using Answers = std::function<bool(const FilePath& folder)>;

  /// Takes `mostWatches` of the system's watches at most; the system has a limit of its own. What
  /// does not answer is polled, and watched as soon as it does.
  explicit FolderWatcher(
      std::size_t mostWatches = std::numeric_limits<std::size_t>::max(),
      Answers answers = [](const FilePath&) { return true; });
  ~FolderWatcher();
  FolderWatcher(const FolderWatcher&) = delete;
  FolderWatcher& operator=(const FolderWatcher&) = delete;

  /// From now on; a folder is to be watched before it is listed, so that nothing is missed. Watched
  /// already: no change. A folder that is not there is polled.
  Watching watch(const FilePath& folder, Seconds now);
  void unwatch(const FilePath& folder);
  /// All, and those of them that are polled.
  [[nodiscard]] std::size_t watchedFolders() const;
  [[nodiscard]] std::size_t polledFolders() const;

  /// Can be polled for reading: readable when `changes` has something to read. Negative: none.
  [[nodiscard]] int descriptor() const;

  struct Changes {
    std::vector<FilePath> folders;          // changed, or due to be looked at again; each once
    bool everythingMayHaveChanged = false;  // events were lost: look at every watched folder
  };
  /// Reads what has happened, and gives what is due at `now`. Never waits.
  [[nodiscard]] Changes changes(Seconds now);
  /// When something is due next, if nothing happens before.
  [[nodiscard]] std::optional<Seconds> nextDue() const;

  /// To be called when a folder was told, by name or with everything, and has been looked at, which
  /// took so long: a polled one is due again in fifty times what all polled folders take, but in
  /// five seconds at least. Nothing happens for others.
  void hasPolled(const FilePath& folder, Seconds now, Seconds took);

  /// Tells a folder, if it is watched, at that moment too, unless it is told before.
  void tellAt(const FilePath& folder, Seconds moment);

 private:
  struct State;
  std::unique_ptr<State> _state;
};

}  // namespace pelmora::platform
