#include "host/EndingLimit.h"

#include <syslog.h>

#include <cstdio>
#include <cstdlib>
#include <system_error>

namespace pelmora::host {

namespace {

constexpr const char* kLine = "Pelmora: Ended without waiting for a disk that does not answer";

}  // namespace

EndingLimit::EndingLimit(std::chrono::milliseconds limit) {
  try {
    _thread = std::thread([this, limit] { watch(limit); });
  } catch (const std::system_error&) {
    _alarm.emplace(limit);
  }
}

EndingLimit::~EndingLimit() {
  {
    const std::lock_guard lock(_mutex);
    _hasEnded = true;
  }
  _ended.notify_one();
  if (_thread.joinable()) _thread.join();
}

void EndingLimit::watch(std::chrono::milliseconds limit) {
  std::unique_lock lock(_mutex);
  if (_ended.wait_for(lock, limit, [this] { return _hasEnded; })) return;
  syslog(LOG_WARNING, "%s", kLine);
  std::fprintf(stderr, "%s\n", kLine);
  std::_Exit(EXIT_SUCCESS);
}

}  // namespace pelmora::host
