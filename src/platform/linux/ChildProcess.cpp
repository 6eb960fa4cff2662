#include "platform/linux/ChildProcess.h"

#include "platform/linux/Deadline.h"

#include "platform/DecodeProtocol.h"
#include "platform/SystemError.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace pelmora::platform {

namespace {

// How long a process that was ended may take to be gone before it is left to `LateChildren`.
constexpr std::chrono::milliseconds kPatience{200};

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kKeepsStandardError = true;  // what a sanitizer finds in the program must be seen
#else
constexpr bool kKeepsStandardError = false;
#endif

/// What is handed on of the environment, where it is set.
constexpr std::array kVariables{"ASAN_OPTIONS", "LD_LIBRARY_PATH", "LSAN_OPTIONS", "TSAN_OPTIONS",
                                "TZ",           "UBSAN_OPTIONS"};

std::vector<std::string> environmentFor() {
  std::vector<std::string> variables{"LC_ALL=C"};
  for (const char* name : kVariables) {
    if (const char* value = std::getenv(name)) variables.push_back(std::string(name) + "=" + value);
  }
  // Without it the C library asks the file system anew for each date, and a sandbox denies that.
  if (!std::getenv("TZ")) variables.emplace_back("TZ=:/etc/localtime");
  return variables;
}

class SpawnActions {
 public:
  SpawnActions() { posix_spawn_file_actions_init(&_actions); }
  ~SpawnActions() { posix_spawn_file_actions_destroy(&_actions); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  /// The socket first: it may itself be one of the descriptors that are replaced.
  int fill(int socket) {
    int error = posix_spawn_file_actions_adddup2(&_actions, socket, kDecoderSocket);
    if (error == 0) error = openNothing(STDIN_FILENO, O_RDONLY);
    if (error == 0) error = openNothing(STDOUT_FILENO, O_WRONLY);
    if (error == 0 && !kKeepsStandardError) error = openNothing(STDERR_FILENO, O_WRONLY);
    if (error != 0) return error;
    return posix_spawn_file_actions_addclosefrom_np(&_actions, kDecoderSocket + 1);
  }
  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &_actions; }

 private:
  int openNothing(int descriptor, int mode) {
    return posix_spawn_file_actions_addopen(&_actions, descriptor, "/dev/null", mode, 0);
  }

  posix_spawn_file_actions_t _actions{};
};

class SpawnAttributes {
 public:
  SpawnAttributes() { posix_spawnattr_init(&_attributes); }
  ~SpawnAttributes() { posix_spawnattr_destroy(&_attributes); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;

  int fill() {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    int error = posix_spawnattr_setsigmask(&_attributes, &none);
    if (error == 0) error = posix_spawnattr_setsigdefault(&_attributes, &all);
    if (error != 0) return error;
    return posix_spawnattr_setflags(&_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  [[nodiscard]] const posix_spawnattr_t* get() const { return &_attributes; }

 private:
  posix_spawnattr_t _attributes{};
};

/// Not fork, which would copy the page tables of a large saver with many threads.
int spawn(const FilePath& program, int socket, pid_t& id) {
  SpawnActions actions;
  SpawnAttributes attributes;
  if (const int error = actions.fill(socket); error != 0) return error;
  if (const int error = attributes.fill(); error != 0) return error;
  std::vector<std::string> variables = environmentFor();
  std::vector<char*> environment;
  for (std::string& variable : variables) environment.push_back(variable.data());
  environment.push_back(nullptr);
  std::string name = program.bytes();
  std::array<char*, 2> words{name.data(), nullptr};
  return posix_spawn(&id, program.c_str(), actions.get(), attributes.get(), words.data(),
                     environment.data());
}

Error cannotStart(const FilePath& program, int error) {
  return Error{"the program " + program.bytes() + " cannot be started (" + systemErrorText(error) +
               ")"};
}

// Not by the functions of <sys/pidfd.h>, which older C libraries lack or declare for C alone.
FileDescriptor openProcess(pid_t id) {
  return FileDescriptor(static_cast<int>(syscall(SYS_pidfd_open, id, 0)));
}

void kill(const FileDescriptor& process) {
  (void)syscall(SYS_pidfd_send_signal, process.get(), SIGKILL, nullptr, 0);
}

bool waitUntilGone(const FileDescriptor& process, std::chrono::milliseconds patience) {
  return Deadline(patience).waitFor(process.get());
}

enum class Collected { notYet, gone };

/// Frees what the kernel keeps of a process that has ended, without waiting for it.
Collected collectOne(const FileDescriptor& process, siginfo_t& facts) {
  facts = {};
  int result = 0;
  do {
    result = waitid(P_PIDFD, static_cast<id_t>(process.get()), &facts, WEXITED | WNOHANG);
  } while (result != 0 && errno == EINTR);
  // An error means that it is gone already: somebody ignores SIGCHLD, or waits for every child.
  return result == 0 && facts.si_pid == 0 ? Collected::notYet : Collected::gone;
}

/// As `waitpid` gives it.
std::optional<int> statusOf(const siginfo_t& facts) {
  if (facts.si_pid == 0) return std::nullopt;
  if (facts.si_code == CLD_EXITED) return W_EXITCODE(facts.si_status, 0);
  return W_EXITCODE(0, facts.si_status);
}

}  // namespace

void LateChildren::add(FileDescriptor process) {
  const std::lock_guard lock(_mutex);
  _processes.push_back(std::move(process));
}

std::size_t LateChildren::collect() {
  const std::lock_guard lock(_mutex);
  std::erase_if(_processes, [](const FileDescriptor& process) {
    siginfo_t facts;
    return collectOne(process, facts) == Collected::gone;
  });
  return _processes.size();
}

Result<ChildProcess> ChildProcess::start(const FilePath& program, LateChildren& late) {
  late.collect();
  std::array<int, 2> ends{-1, -1};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
    return cannotStart(program, errno);
  }
  FileDescriptor ours(ends[0]);
  const FileDescriptor theirs(ends[1]);
  pid_t id = 0;
  if (const int error = spawn(program, theirs.get(), id); error != 0) {
    return cannotStart(program, error);
  }
  FileDescriptor process = openProcess(id);
  if (!process.isOpen()) {
    // Out of descriptors, say. With its socket closed it ends by itself, at once.
    const int error = errno;
    ::kill(id, SIGKILL);
    waitpid(id, nullptr, 0);
    return cannotStart(program, error);
  }
  return ChildProcess(id, std::move(process), std::move(ours), late);
}

std::optional<int> ChildProcess::end(std::chrono::milliseconds patience) {
  if (!_process.isOpen()) return std::nullopt;
  FileDescriptor process = std::move(_process);
  const bool endedItself = patience.count() > 0 && waitUntilGone(process, patience);
  if (!endedItself) {
    kill(process);
    waitUntilGone(process, kPatience);
  }
  siginfo_t facts;
  if (collectOne(process, facts) == Collected::gone) {
    return endedItself ? statusOf(facts) : std::nullopt;
  }
  _late.add(std::move(process));
  return std::nullopt;
}

ChildProcess::~ChildProcess() { end(std::chrono::milliseconds(0)); }

std::string describeEnd(int status) {
  if (WIFSIGNALED(status)) {
    const char* name = sigdescr_np(WTERMSIG(status));
    return std::string("crashed (") + (name ? name : "unknown signal") + ")";
  }
  return "ended (status " + std::to_string(WEXITSTATUS(status)) + ")";
}

}  // namespace pelmora::platform
