#pragma once

#include "platform/PostedTasks.h"
#include "platform/Scheduler.h"
#include "platform/TimerList.h"

#include <QObject>
#include <QTimer>

#include <functional>

namespace pelmora::host {

/// The run loop of the GUI thread as the module's main one, for a view among widgets. Wakes once
/// for all timers that are due together.
/// Thread: main is the one that makes it; `post`, `isMainThread` and `sleep` from any. After its
/// end nothing that was posted runs.
class GuiScheduler : public platform::Scheduler {
 public:
  /// `clock` is a real one, and outlives this. A QCoreApplication must be there.
  explicit GuiScheduler(const platform::Clock& clock);
  ~GuiScheduler() override;
  GuiScheduler(const GuiScheduler&) = delete;
  GuiScheduler& operator=(const GuiScheduler&) = delete;

  TimerId after(double delay, Task task) override;
  TimerId every(double interval, Task task) override;
  void cancel(TimerId timer) override;
  void post(Task task) override;
  [[nodiscard]] bool isMainThread() const override;
  void sleep(double seconds) override;

  /// Called on main after each timer's task and each batch of posted tasks.
  void setEndOfTurn(std::function<void()> endOfTurn) { _endOfTurn = std::move(endOfTurn); }

 private:
  void runPosted();
  void runDueTimers();
  void setTimer();

  const platform::Clock& _clock;
  QObject _context;
  QTimer _timer;
  platform::PostedTasks _posted;
  platform::TimerList _timers;
  std::function<void()> _endOfTurn = [] {};
};

}  // namespace pelmora::host
