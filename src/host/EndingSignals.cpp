#include "host/EndingSignals.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace pelmora::host {

namespace {

sigset_t endingSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&set, number);
  return set;
}

}  // namespace

void prepareSignals() {
  std::signal(SIGPIPE, SIG_IGN);
  const sigset_t set = endingSignals();
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

EndingSignals::EndingSignals(std::function<void()> ended) {
  const sigset_t set = endingSignals();
  _descriptor = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
  if (_descriptor < 0) return;
  _notifier = std::make_unique<QSocketNotifier>(_descriptor, QSocketNotifier::Read);
  QObject::connect(_notifier.get(), &QSocketNotifier::activated, _notifier.get(),
                   [this, ended = std::move(ended)] {
                     signalfd_siginfo info{};
                     if (read(_descriptor, &info, sizeof info) == sizeof info) ended();
                   });
}

EndingSignals::~EndingSignals() {
  _notifier.reset();
  if (_descriptor >= 0) close(_descriptor);
}

UnblockedSignals::UnblockedSignals() {
  const sigset_t set = endingSignals();
  pthread_sigmask(SIG_UNBLOCK, &set, &_before);
}

UnblockedSignals::~UnblockedSignals() { pthread_sigmask(SIG_SETMASK, &_before, nullptr); }

}  // namespace pelmora::host
