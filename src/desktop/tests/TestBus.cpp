#include "desktop/tests/TestBus.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <stdexcept>

namespace pelmora::desktop {

TestBus::TestBus() {
  if (!QCoreApplication::instance()) _application.emplace(_count, _words);
  const std::string socket = "--address=unix:dir=" + _folder.path().bytes();
  int told[2];
  if (pipe(told) != 0) throw std::runtime_error("no pipe");
  _process = fork();
  if (_process == 0) {
    dup2(told[1], STDOUT_FILENO);
    close(told[0]);
    execlp("dbus-daemon", "dbus-daemon", "--nofork", "--print-address=1",
           "--config-file=" PELMORA_BUS_CONFIGURATION, socket.c_str(), nullptr);
    _exit(127);
  }
  close(told[1]);
  FILE* lines = fdopen(told[0], "r");
  char line[1024] = "";
  if (!std::fgets(line, sizeof line, lines)) throw std::runtime_error("dbus-daemon did not start");
  std::fclose(lines);
  _address = line;
  _address.erase(_address.find_last_not_of('\n') + 1);
}

void TestBus::kill() {
  if (_process <= 0) return;
  ::kill(_process, SIGKILL);
  waitpid(_process, nullptr, 0);
  _process = -1;
}

}  // namespace pelmora::desktop
