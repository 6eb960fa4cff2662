#include "platform/linux/index/MetadataInspector.h"

#include "platform/linux/index/InspectorProcess.h"
#include "platform/metadata/MetadataProtocol.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

namespace pelmora::platform {

namespace {

// Inspectors that are started, one after the other, before any file is answered.
constexpr int kMaxStarts = 3;

/// Whether the kernel would not take a request, for no fault of the inspector's.
bool isRefused(int error) { return error == ETOOMANYREFS || error == ENOBUFS || error == ENOMEM; }

}  // namespace

struct MetadataInspector::State {
  explicit State(Settings chosen) : settings(std::move(chosen)) {}

  const Settings settings;
  LateChildren late;
  std::optional<InspectorProcess> process;
};

/// One call: files in their order, some asked ahead of those that are answered.
class MetadataInspector::Run {
 public:
  Run(State& state, std::span<const FileDescriptor> files, const Take& take)
      : _state(state), _files(files), _take(take) {}

  Status run() {
    if (_state.process && _state.process->hasEnded()) _state.process.reset();
    while (_first < _files.size() && _isWanted) {
      if (!_files[_first].isOpen()) {
        answer(Error{"it is not open"});
      } else if (_state.process || start()) {
        askAhead();
        if (_state.process->ahead() == 0 && isRefused(_error)) {
          return Error{"its inspector cannot be asked: " + systemErrorText(_error)};
        }
        takeNext();
      } else if (_starts >= kMaxStarts) {
        return _problem;
      }
    }
    // What it was asked ahead, nobody waits for.
    if (_state.process && _state.process->ahead() > 0) _state.process.reset();
    return Done{};
  }

 private:
  bool start() {
    _next = _first;
    if (_starts >= kMaxStarts) return false;
    ++_starts;
    Result<InspectorProcess> process =
        InspectorProcess::start(_state.settings.program, _state.settings.deadline, _state.late);
    if (!process) {
      _problem = process.error();
      return false;
    }
    _state.process.emplace(*std::move(process));
    return true;
  }

  void askAhead() {
    _next = std::max(_next, _first);
    for (; _next < _files.size() && _state.process->ahead() < metadata::kMaxAhead; ++_next) {
      if (!_files[_next].isOpen()) continue;
      _error = _state.process->ask(_files[_next].get());
      if (_error != 0) return;
    }
  }

  void takeNext() {
    InspectorProcess::Answer next = _state.process->next();
    if (!_state.process->isAlive()) {
      _state.process.reset();
      _next = _first;
    }
    if (next.wasTaken) {
      answer(std::move(next.metadata));
    } else {
      _problem = next.metadata.error();
    }
  }

  void answer(Answer answer) {
    _starts = 0;
    _isWanted = _take(_first++, std::move(answer));
  }

  State& _state;
  const std::span<const FileDescriptor> _files;
  const Take& _take;
  std::size_t _first = 0;  // that is not answered
  std::size_t _next = 0;   // to be asked for
  int _error = 0;          // of the last one that was
  int _starts = 0;
  bool _isWanted = true;  // what is not answered
  Error _problem;
};

MetadataInspector::MetadataInspector(Settings settings)
    : _state(std::make_unique<State>(std::move(settings))) {}

MetadataInspector::~MetadataInspector() = default;

Status MetadataInspector::inspect(std::span<const FileDescriptor> files, const Take& take) {
  return Run(*_state, files, take).run();
}

}  // namespace pelmora::platform
