#include "platform/linux/index/MetadataIndex.h"

#include "platform/FileDescriptor.h"
#include "platform/ThreadPriority.h"

#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace pelmora::platform {

using Command = std::function<void(IndexWork&)>;

/// Runs the work, and takes commands for it from other threads.
class MetadataIndex::Thread {
 public:
  explicit Thread(Tools tools)
      : _tools(std::move(tools)), _wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
  ~Thread();

  /// What is sent before the start is done then.
  void send(Command command);
  /// False where no thread can be had; the next start tries again.
  bool start();
  void wake() const { eventfd_write(_wake.get(), 1); }
  [[nodiscard]] IndexProgress progress() const;

 private:
  void run();
  void work(IndexWork& work);
  void waitForMore(const IndexWork& work) const;
  void takeCommands(IndexWork& work);
  void setProgress(const IndexProgress& progress);

  const Tools _tools;
  const FileDescriptor _wake;
  std::atomic<bool> _isEnding{false};
  mutable std::mutex _mutex;  // guards the two below
  std::vector<Command> _commands;
  IndexProgress _progress;
  std::thread _thread;
};

MetadataIndex::Thread::~Thread() {
  _isEnding = true;
  wake();
  if (_thread.joinable()) _thread.join();
}

void MetadataIndex::Thread::send(Command command) {
  {
    const std::lock_guard lock(_mutex);
    _commands.push_back(std::move(command));
  }
  wake();
}

bool MetadataIndex::Thread::start() {
  if (_thread.joinable()) return true;
  try {
    _thread = std::thread([this] { run(); });
    return true;
  } catch (const std::system_error& problem) {
    _tools.log.print("Pelmora: Nothing can be searched for now: %s", problem.what());
    return false;
  }
}

IndexProgress MetadataIndex::Thread::progress() const {
  const std::lock_guard lock(_mutex);
  return _progress;
}

void MetadataIndex::Thread::setProgress(const IndexProgress& progress) {
  const std::lock_guard lock(_mutex);
  _progress = progress;
}

void MetadataIndex::Thread::run() {
  pthread_setname_np(pthread_self(), "metadata index");
  yieldToEverythingElse();
  IndexWork work({.files = _tools.files,
                  .log = _tools.log,
                  .clock = _tools.clock,
                  .notifications = _tools.notifications,
                  .inspect = _tools.inspect,
                  .isOver = [this] { return _isEnding.load(); },
                  .progress = [this](const IndexProgress& progress) { setProgress(progress); },
                  .file = _tools.file(),
                  .mostWatches = _tools.mostWatches});
  while (!_isEnding) {
    takeCommands(work);
    // The wake of the end may be one of those that have just been taken.
    if (!work.doNext() && !_isEnding) waitForMore(work);
  }
}

void MetadataIndex::Thread::takeCommands(IndexWork& work) {
  eventfd_t count = 0;
  eventfd_read(_wake.get(), &count);
  std::vector<Command> commands;
  {
    const std::lock_guard lock(_mutex);
    commands.swap(_commands);
  }
  for (const Command& command : commands) command(work);
}

void MetadataIndex::Thread::waitForMore(const IndexWork& work) const {
  int timeout = -1;
  if (const std::optional<double> due = work.nextDue()) {
    constexpr double kLongest = 3600;  // seconds
    const double seconds = std::clamp(*due - _tools.clock.mediaTime(), 0.0, kLongest);
    timeout = static_cast<int>(std::ceil(seconds * 1000));
  }
  // A negative descriptor is passed over.
  std::array<pollfd, 2> descriptors{{{_wake.get(), POLLIN, 0}, {work.descriptor(), POLLIN, 0}}};
  poll(descriptors.data(), descriptors.size(), timeout);
}

/// What main sees of a query; the rest of it is with the thread.
class MetadataIndex::Query : public MetadataQuery {
 public:
  Query(Thread& thread, IndexWork::QueryId id) : _thread(thread), _id(id) {
    _thread.send([id, state = _state](IndexWork& work) { work.addQuery(id, state); });
  }
  ~Query() override {
    _state->end();
    _thread.send([id = _id](IndexWork& work) { work.removeQuery(id); });
  }
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  void setPredicate(predicate::Predicate predicate) override {
    _thread.send([id = _id, chosen = std::move(predicate)](IndexWork& work) {
      work.setPredicate(id, chosen);
    });
  }
  void setSearchScopes(SearchScopes scopes) override;
  [[nodiscard]] SearchScopes searchScopes() const override { return _scopes; }
  void start() override;
  void stop() override;
  void disableUpdates() override { ++_state->disabled; }
  void enableUpdates() override {
    if (--_state->disabled == 0) _thread.wake();
  }
  void waitUntilGathered() override { _state->waitUntilFinished(); }

 private:
  Thread& _thread;
  const IndexWork::QueryId _id;
  const std::shared_ptr<QueryState> _state = std::make_shared<QueryState>();
  SearchScopes _scopes;
  std::uint64_t _starts = 0;
};

void MetadataIndex::Query::setSearchScopes(SearchScopes scopes) {
  const bool isMore = scopes.continues(_scopes);
  std::vector<FilePath> folders;
  for (std::size_t i = isMore ? _scopes.size() : 0; i < scopes.size(); ++i) {
    // What is no absolute path is nowhere.
    if (scopes[i].starts_with('/')) folders.emplace_back(scopes[i]);
  }
  _scopes = std::move(scopes);
  _thread.send([id = _id, isMore, folders = std::move(folders)](IndexWork& work) {
    if (isMore) {
      work.addScopes(id, folders);
    } else {
      work.setScopes(id, folders);
    }
  });
}

void MetadataIndex::Query::start() {
  _state->begin(++_starts);
  _thread.send([id = _id, number = _starts](IndexWork& work) { work.start(id, number); });
  if (!_thread.start()) _state->end();
}

void MetadataIndex::Query::stop() {
  _state->end();
  _thread.send([id = _id](IndexWork& work) { work.stop(id); });
}

MetadataIndex::MetadataIndex(Tools tools) : _thread(std::make_unique<Thread>(std::move(tools))) {}

MetadataIndex::~MetadataIndex() = default;

std::unique_ptr<MetadataQuery> MetadataIndex::makeQuery() {
  return std::make_unique<Query>(*_thread, ++_lastQuery);
}

IndexProgress MetadataIndex::progress() const { return _thread->progress(); }

void MetadataIndex::suggestValues(std::string attribute, std::size_t count,
                                  std::function<void(std::vector<std::string>)> answer) {
  _thread->send([attribute = std::move(attribute), count, answer = std::move(answer)](
                    IndexWork& work) { answer(work.frequentTexts(attribute, count)); });
  (void)_thread->start();
}

}  // namespace pelmora::platform
