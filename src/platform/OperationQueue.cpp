#include "platform/OperationQueue.h"

#include "platform/ThreadPriority.h"

#include <pthread.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace pelmora::platform {

namespace {

constexpr std::size_t kLongestThreadName = 15;  // bytes

}  // namespace

OperationQueue::OperationQueue(Config config)
    : _config{std::max<std::size_t>(config.maxConcurrentOperations, 1), config.qualityOfService,
              std::move(config.name), std::move(config.startThread)} {}

OperationQueue::~OperationQueue() {
  {
    const std::lock_guard lock(_mutex);
    _ending = true;
  }
  cancelAllOperations();
  _workArrived.notify_all();
  for (std::thread& thread : _threads) thread.join();
}

void OperationQueue::addOperation(std::shared_ptr<Operation> operation) {
  {
    std::unique_lock lock(_mutex);
    if (_ending) return;
    _queued.push_back(std::move(operation));
    if (!_suspended) startThreadsOrWork(lock);
  }
  _workArrived.notify_one();
}

void OperationQueue::setSuspended(bool suspended) {
  {
    std::unique_lock lock(_mutex);
    _suspended = suspended;
    if (_suspended || _ending) return;
    startThreadsOrWork(lock);
  }
  _workArrived.notify_all();
}

bool OperationQueue::isSuspended() const {
  const std::lock_guard lock(_mutex);
  return _suspended;
}

void OperationQueue::cancelAllOperations() {
  std::deque<std::shared_ptr<Operation>> dropped;  // destroyed after the lock is given back
  const std::lock_guard lock(_mutex);
  dropped.swap(_queued);
  for (const auto& operation : dropped) operation->cancel();
  for (const auto& operation : _running) {
    if (operation) operation->cancel();
  }
  if (_running.empty()) _allDone.notify_all();
}

std::size_t OperationQueue::operationCount() const {
  const std::lock_guard lock(_mutex);
  return _queued.size() + _running.size();
}

void OperationQueue::waitUntilAllOperationsAreFinished() {
  std::unique_lock lock(_mutex);
  _allDone.wait(lock, [this] { return _queued.empty() && _running.empty(); });
}

/// Without a single thread whoever adds does the work.
void OperationQueue::startThreadsOrWork(std::unique_lock<std::mutex>& lock) {
  startThreads();
  if (!_threads.empty() || _isWorkingHere) return;
  _isWorkingHere = true;
  while (_threads.empty() && !_ending && !_suspended && !_queued.empty()) {
    runNext(lock);
    startThreads();
  }
  _isWorkingHere = false;
  if (_queued.empty() && _running.empty()) _allDone.notify_all();
}

void OperationQueue::startThreads() {
  const std::size_t operations = _queued.size() + _running.size();
  const std::size_t wanted = std::min(operations, _config.maxConcurrentOperations);
  while (_threads.size() < wanted) {
    try {
      _threads.push_back(_config.startThread([this] { work(); }));
    } catch (const std::system_error&) {
      return;  // the system is short of threads: those that run do all the work
    }
  }
}

void OperationQueue::work() {
  if (!_config.name.empty()) {
    pthread_setname_np(pthread_self(), _config.name.substr(0, kLongestThreadName).c_str());
  }
  if (_config.qualityOfService == QualityOfService::background) yieldToEverythingElse();
  std::unique_lock lock(_mutex);
  for (;;) {
    _workArrived.wait(lock, [this] { return _ending || (!_suspended && !_queued.empty()); });
    if (_ending) return;
    runNext(lock);
    if (_queued.empty() && _running.empty()) _allDone.notify_all();
  }
}

void OperationQueue::runNext(std::unique_lock<std::mutex>& lock) {
  std::shared_ptr<Operation> operation = std::move(_queued.front());
  _queued.pop_front();
  _running.push_back(operation);
  lock.unlock();
  if (!operation->isCancelled()) operation->main();
  lock.lock();
  // It is destroyed without the lock, and before it counts as finished: whoever waits for the queue
  // may then take apart what the operation used.
  *std::find(_running.begin(), _running.end(), operation) = nullptr;
  lock.unlock();
  operation.reset();
  lock.lock();
  _running.erase(std::find(_running.begin(), _running.end(), nullptr));
}

}  // namespace pelmora::platform
