#pragma once

#include <QSocketNotifier>

#include <csignal>
#include <functional>
#include <memory>

namespace pelmora::host {

/// Turns SIGINT, SIGTERM and SIGHUP into a call on the GUI thread, so that a run ends with its stop
/// work done. The signals must be blocked before any thread starts (`prepareSignals`).
/// Thread: GUI.
class EndingSignals {
 public:
  explicit EndingSignals(std::function<void()> ended);
  ~EndingSignals();
  EndingSignals(const EndingSignals&) = delete;
  EndingSignals& operator=(const EndingSignals&) = delete;

 private:
  int _descriptor;
  std::unique_ptr<QSocketNotifier> _notifier;
};

/// For main, before it starts anything. Blocks those signals, and ignores SIGPIPE: a write to a
/// window system that has gone fails then, and does not end the run without its stop work. Programs
/// that are started inherit both, but for what the toolkit sets back: its default for SIGPIPE.
void prepareSignals();

/// Lets this thread hear them again, while it starts a program that would inherit the block: one
/// that comes in between ends the run without its stop work.
class UnblockedSignals {
 public:
  UnblockedSignals();
  ~UnblockedSignals();
  UnblockedSignals(const UnblockedSignals&) = delete;
  UnblockedSignals& operator=(const UnblockedSignals&) = delete;

 private:
  sigset_t _before;
};

}  // namespace pelmora::host
