#include "host/ConnectionLoss.h"

#include "host/Command.h"

#include <QString>
#include <QtGlobal>

#include <unistd.h>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace pelmora::host {

namespace {

std::mutex mutex;  // guards all below
std::function<void()> work;
QtMessageHandler nextHandler = nullptr;
std::optional<std::thread::id> worker;  // that does the last work

void handleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  std::function<void()> lastWork;
  QtMessageHandler next = nullptr;
  bool isAnothers = false;
  {
    const std::lock_guard lock(mutex);
    next = nextHandler;
    if (type != QtDebugMsg && type != QtInfoMsg && tellsOfConnectionLoss(qUtf8Printable(message))) {
      lastWork = std::exchange(work, nullptr);
      isAnothers = worker && *worker != std::this_thread::get_id();
      if (lastWork) worker = std::this_thread::get_id();
    }
  }
  if (lastWork) {
    std::fputs("pelmora: the display has gone\n", stderr);
    lastWork();
    // No destructors: they would talk to the window system.
    std::_Exit(static_cast<int>(ExitStatus::failure));
  }
  // Back in Qt this thread would end the process under the hands of the one that is at work.
  while (isAnothers) pause();
  if (next) next(type, context, message);
}

}  // namespace

bool tellsOfConnectionLoss(std::string_view warning) {
  for (const std::string_view server : {"Wayland", "X11"}) {
    const std::string start = "The " + std::string(server) + " connection ";
    if (!warning.starts_with(start)) continue;
    const std::string_view rest = warning.substr(start.size());
    return rest.starts_with("broke") || rest.starts_with("experienced a fatal error");
  }
  return false;
}

ConnectionLoss::ConnectionLoss(std::function<void()> lastWork) {
  const std::lock_guard lock(mutex);
  work = std::move(lastWork);
  nextHandler = qInstallMessageHandler(handleMessage);
}

ConnectionLoss::~ConnectionLoss() {
  const std::lock_guard lock(mutex);
  qInstallMessageHandler(nextHandler);
  work = nullptr;
}

}  // namespace pelmora::host
