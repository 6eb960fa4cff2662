#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace pelmora::platform {

/// Does what may never end on threads of its own, and waits for it only so long. While something
/// under a name has not ended, nothing else is begun under that name: a server that is away costs
/// one wait, not one for each of its files. Thread: any. Ownership: a thread that hangs is left to
/// itself, and so is all that its work holds: the work must not refer to what may go. Errors: none
/// is begun where no thread can be started.
class StallGuard {
 public:
  explicit StallGuard(std::chrono::milliseconds limit);
  ~StallGuard();
  StallGuard(const StallGuard&) = delete;
  StallGuard& operator=(const StallGuard&) = delete;

  /// What the work gives, or nullopt where it did not end in time, or could not be begun.
  template <typename Work>
  auto wait(const std::string& name, Work work) -> std::optional<decltype(work())> {
    using Value = decltype(work());
    const auto value = std::make_shared<std::optional<Value>>();
    if (!finish(name, [value, work = std::move(work)] { *value = work(); })) {
      return std::nullopt;
    }
    return std::move(*value);
  }

  /// Ends all waiting, now and from now on: the program is about to end.
  void giveUp();

  /// Whether something under that name has not ended in time, and still has not.
  [[nodiscard]] bool isStalled(const std::string& name) const;

 private:
  struct Task;
  struct State;

  /// Whether the work has ended in time.
  bool finish(const std::string& name, std::function<void()> work);
  static void serve(const std::shared_ptr<State>& state);

  const std::chrono::milliseconds _limit;
  const std::shared_ptr<State> _state;
};

}  // namespace pelmora::platform
