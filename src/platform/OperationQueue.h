#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace pelmora::platform {

/// A piece of work for an `OperationQueue`. Cancelling only sets a flag: a queued operation is then
/// dropped, a running one is expected to look.
class Operation {
 public:
  virtual ~Operation() = default;
  /// The work; on a worker thread, once.
  virtual void main() = 0;
  [[nodiscard]] bool isCancelled() const { return _cancelled.load(std::memory_order_relaxed); }
  void cancel() { _cancelled.store(true, std::memory_order_relaxed); }

 private:
  std::atomic<bool> _cancelled{false};
};

enum class QualityOfService { standard, background };

/// Runs operations first in, first out, on up to `maxConcurrentOperations` threads of its own,
/// which start when there is work. At background quality they run at the lowest processor and
/// input/output priority. Thread: any; an operation may add to its own queue, but neither wait for
/// it nor destroy it. Destruction cancels, then waits for the running operations; what they add
/// then is dropped. Ownership: an operation is let go before it counts as finished. Errors:
/// where not a single thread can be started, whoever adds an operation runs it.
class OperationQueue {
 public:
  struct Config {
    std::size_t maxConcurrentOperations = 1;
    QualityOfService qualityOfService = QualityOfService::standard;
    std::string name = {};  // of the queue; its threads have as much of it as the system allows
    /// Throws as std::thread does.
    std::function<std::thread(std::function<void()>)> startThread = [](std::function<void()> work) {
      return std::thread(std::move(work));
    };
  };

  explicit OperationQueue(Config config);
  ~OperationQueue();
  OperationQueue(const OperationQueue&) = delete;
  OperationQueue& operator=(const OperationQueue&) = delete;

  void addOperation(std::shared_ptr<Operation> operation);
  /// While suspended no further operation starts.
  void setSuspended(bool suspended);
  [[nodiscard]] bool isSuspended() const;
  void cancelAllOperations();
  /// Queued and running ones.
  [[nodiscard]] std::size_t operationCount() const;
  void waitUntilAllOperationsAreFinished();
  [[nodiscard]] const Config& config() const { return _config; }

 private:
  void work();
  void runNext(std::unique_lock<std::mutex>& lock);
  void startThreads();
  void startThreadsOrWork(std::unique_lock<std::mutex>& lock);

  const Config _config;
  mutable std::mutex _mutex;  // guards all below
  std::condition_variable _workArrived;
  std::condition_variable _allDone;
  std::deque<std::shared_ptr<Operation>> _queued;
  std::vector<std::shared_ptr<Operation>> _running;  // null: run, and about to be forgotten
  std::vector<std::thread> _threads;
  bool _isWorkingHere = false;  // somebody who added runs operations
  bool _suspended = false;
  bool _ending = false;
};

}  // namespace pelmora::platform
