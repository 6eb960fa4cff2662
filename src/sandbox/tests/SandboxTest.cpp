#include "sandbox/Sandbox.h"

#include "platform/FileDescriptor.h"
#include "sandbox/MemoryUse.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <functional>
#include <thread>
#include <vector>

namespace pelmora::sandbox {

namespace {

constexpr std::int64_t kMemory = 256 << 20;
constexpr int kHolds = 0;
constexpr int kDoesNot = 1;
constexpr int kNotEntered = 2;

/// The status of a process that enters the sandbox and then tells whether `holds`.
int inSandbox(const std::function<bool()>& holds) {
  const pid_t child = fork();
  if (child == 0) {
    if (!enterSandbox({.memory = kMemory, .handedOver = kMemory})) _exit(kNotEntered);
    _exit(holds() ? kHolds : kDoesNot);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 100 + WTERMSIG(status);
}

/// Whether what gave `result` was denied.
bool isDenied(long result) { return result == -1 && (errno == EPERM || errno == EACCES); }

bool mapsNothing(int protection) {
  void* const mapping = mmap(nullptr, 4096, protection, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return mapping == MAP_FAILED && errno == EPERM;
}

}  // namespace

TEST(Sandbox, opensNoFile) {
  EXPECT_EQ(inSandbox([] { return isDenied(open("/etc/passwd", O_RDONLY)); }), kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(openat(AT_FDCWD, "/", O_RDONLY)); }), kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(syscall(SYS_openat2, AT_FDCWD, "/", nullptr, 0)); }),
            kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(open("/tmp/pelmora", O_CREAT | O_RDWR, 0600)); }),
            kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(unlink("/nonexistent")); }), kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(mkdir("/nonexistent/folder", 0700)); }), kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(chdir("/")); }), kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(access("/", R_OK)); }), kHolds);
}

TEST(Sandbox, reachesNoNetwork) {
  for (const int family : {AF_INET, AF_INET6, AF_UNIX, AF_NETLINK}) {
    EXPECT_EQ(inSandbox([family] { return isDenied(socket(family, SOCK_DGRAM, 0)); }), kHolds);
  }
  const platform::FileDescriptor made(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const auto* const general = reinterpret_cast<const sockaddr*>(&address);
  EXPECT_EQ(inSandbox([&] { return isDenied(connect(made.get(), general, sizeof address)); }),
            kHolds);
  EXPECT_EQ(inSandbox([&] { return isDenied(bind(made.get(), general, sizeof address)); }), kHolds);
}

TEST(Sandbox, startsAndTouchesNoProcess) {
  EXPECT_EQ(inSandbox([] {
              std::array<char*, 1> none{nullptr};
              return isDenied(execve("/bin/true", none.data(), none.data()));
            }),
            kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0)); }), kHolds);
  EXPECT_EQ(inSandbox([] { return fork() == -1; }), kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(kill(getppid(), 0)); }), kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(syscall(SYS_tgkill, getppid(), getppid(), 0)); }),
            kHolds);
  EXPECT_EQ(inSandbox([] { return isDenied(ptrace(PTRACE_TRACEME, 0, nullptr, nullptr)); }),
            kHolds);
  EXPECT_EQ(inSandbox([] {
              rlimit limit{};
              return isDenied(prlimit(getppid(), RLIMIT_CPU, nullptr, &limit));
            }),
            kHolds);
}

TEST(Sandbox, makesNothingExecutable) {
  EXPECT_EQ(inSandbox([] { return mapsNothing(PROT_READ | PROT_EXEC); }), kHolds);
  EXPECT_EQ(inSandbox([] { return mapsNothing(PROT_READ | PROT_WRITE | PROT_EXEC); }), kHolds);
  EXPECT_EQ(inSandbox([] {
              void* const page =
                  mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
              return page != MAP_FAILED && isDenied(mprotect(page, 4096, PROT_READ | PROT_EXEC));
            }),
            kHolds);
}

TEST(Sandbox, boundsWhatItTakes) {
  EXPECT_EQ(inSandbox([] {
              rlimit limit{};
              const bool isBound = getrlimit(RLIMIT_CORE, &limit) == 0 && limit.rlim_max == 0;
              return isBound && getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_max <= 16;
            }),
            kHolds);
  EXPECT_EQ(inSandbox([] {
              const rlimit more{RLIM_INFINITY, RLIM_INFINITY};
              return isDenied(setrlimit(RLIMIT_AS, &more));
            }),
            kHolds);
#if !defined(__SANITIZE_ADDRESS__)
  EXPECT_EQ(inSandbox([] {
              void* const most =
                  mmap(nullptr, 2 * kMemory, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
              return most == MAP_FAILED && errno == ENOMEM;
            }),
            kHolds);
#endif
}

TEST(Sandbox, isNotLookedInto) {
  EXPECT_EQ(inSandbox([] { return isDenied(prctl(PR_SET_DUMPABLE, 1, 0, 0, 0)); }), kHolds);
}

TEST(Sandbox, leavesWhatIsNeeded) {
  EXPECT_EQ(inSandbox([] { return std::vector<char>(kMemory / 2, 'x').back() == 'x'; }), kHolds);
  EXPECT_EQ(inSandbox([] {
              int ran = 0;
              std::thread thread([&ran] { ran = 1; });
              thread.join();
              return ran == 1;
            }),
            kHolds);
  EXPECT_EQ(inSandbox([] {
              const int memory = memfd_create("pixels", MFD_CLOEXEC | MFD_ALLOW_SEALING);
              if (memory < 0 || ftruncate(memory, 100) != 0) return false;
              return fcntl(memory, F_ADD_SEALS, F_SEAL_WRITE | F_SEAL_SHRINK) == 0;
            }),
            kHolds);
}

TEST(Sandbox, readsWhatIsOpenAlready) {
  const platform::FileDescriptor file(open("/proc/self/exe", O_RDONLY | O_CLOEXEC));
  EXPECT_EQ(inSandbox([&file] {
              struct stat facts {};
              char byte = 0;
              const int copy = dup(file.get());
              return copy >= 0 && fstat(copy, &facts) == 0 && facts.st_size > 0 &&
                     read(copy, &byte, 1) == 1 && lseek(copy, 0, SEEK_SET) == 0;
            }),
            kHolds);
  const MemoryUse use;
  EXPECT_EQ(inSandbox([&use] { return use.now().resident > 0; }), kHolds);
}

TEST(Sandbox, canEndItself) {
  EXPECT_EQ(inSandbox([] {
              std::signal(SIGABRT, SIG_DFL);
              abort();
              return false;
            }),
            100 + SIGABRT);
  EXPECT_EQ(inSandbox([] {
              std::signal(SIGALRM, SIG_DFL);
              const rlimit second{1, RLIM_INFINITY};
              (void)setrlimit(RLIMIT_CPU, &second);
              raise(SIGALRM);
              return false;
            }),
            100 + SIGALRM);
}

}  // namespace pelmora::sandbox
