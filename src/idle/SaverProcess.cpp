#include "idle/SaverProcess.h"

#include <QFile>

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace pelmora::idle {

namespace {

QString decoded(const std::string& bytes) { return QFile::decodeName(bytes.c_str()); }

/// In the child, before it becomes the saver: only calls that are safe after a fork.
void prepareChild(pid_t parent) {
  // The parent blocks the signals that end it, to hear of them in its own way, and ignores one.
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  signal(SIGPIPE, SIG_DFL);
  // Not a signal that could be ignored: a parent that was killed cannot kill.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);
}

std::string endOf(const QProcess& process, int status) {
  if (process.exitStatus() == QProcess::CrashExit) {
    return "was ended by signal " + std::to_string(status);
  }
  return "has ended" + (status == 0 ? std::string() : " with status " + std::to_string(status));
}

}  // namespace

SaverProcess::SaverProcess(std::string program, std::vector<std::string> arguments)
    : _program(std::move(program)), _arguments(std::move(arguments)) {}

SaverProcess::~SaverProcess() {
  if (!_process) return;
  _process->disconnect();
  _process->kill();
  _process->waitForFinished();
}

void SaverProcess::start(std::function<void(const std::string& how)> ended) {
  _ended = std::move(ended);
  _process = std::make_unique<QProcess>();
  _process->setProgram(decoded(_program));
  QStringList arguments;
  for (const std::string& each : _arguments) arguments << decoded(each);
  _process->setArguments(arguments);
  _process->setProcessChannelMode(QProcess::ForwardedChannels);
  _process->setStandardInputFile(QProcess::nullDevice());
  _process->setChildProcessModifier([parent = getpid()] { prepareChild(parent); });
  // Queued, so that it is destroyed when nothing of it runs any more.
  QObject::connect(
      _process.get(), &QProcess::finished, _process.get(),
      [this](int status) { finish(endOf(*_process, status)); }, Qt::QueuedConnection);
  QObject::connect(
      _process.get(), &QProcess::errorOccurred, _process.get(),
      [this](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart) return;
        finish("cannot be started: " + _process->errorString().toStdString());
      },
      Qt::QueuedConnection);
  _process->start();
}

void SaverProcess::stop() {
  if (_process) _process->terminate();
}

void SaverProcess::kill() {
  if (_process) _process->kill();
}

void SaverProcess::finish(const std::string& how) {
  // It may start the next one.
  _process.release()->deleteLater();
  std::exchange(_ended, nullptr)(how);
}

}  // namespace pelmora::idle
