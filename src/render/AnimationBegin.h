#pragma once

#include <atomic>
#include <functional>
#include <limits>
#include <memory>
#include <mutex>

namespace pelmora::platform {
class Scheduler;
}

namespace pelmora::render {

/// Carries the news that animations have begun from whichever thread presents to main, where a tree
/// waits for it. Several begins before main gets to run make one turn.
/// Thread: `post` from any; the rest on main.
class BeginNotice : public std::enable_shared_from_this<BeginNotice> {
 public:
  BeginNotice(platform::Scheduler& scheduler, std::function<void()> received);

  void post();
  /// After this nothing is received, and the scheduler is no longer used.
  void close();

 private:
  void receive();

  std::function<void()> _received;  // main's
  std::mutex _mutex;                // guards what follows
  platform::Scheduler* _scheduler;
  bool _posted = false;
};

/// When a running animation began: unknown until a frame shows it, then fixed for good. Shared by
/// the layer and by every snapshot that shows the animation. Thread: `time`, `isKnown` and `fix`
/// from any; `setNotice` on main, before the record is shared.
class AnimationBegin {
 public:
  /// Media time; not a number while unknown.
  [[nodiscard]] double time() const { return _time.load(std::memory_order_acquire); }
  [[nodiscard]] bool isKnown() const;
  /// Fixes the begin, unless it is known already: the first frame counts.
  void fix(double time);
  void setNotice(std::shared_ptr<BeginNotice> notice) { _notice = std::move(notice); }

 private:
  std::atomic<double> _time{std::numeric_limits<double>::quiet_NaN()};
  std::shared_ptr<BeginNotice> _notice;
};

}  // namespace pelmora::render
