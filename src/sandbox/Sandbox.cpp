#include "sandbox/Sandbox.h"

#include "platform/FileDescriptor.h"
#include "platform/SystemError.h"
#include "sandbox/MemoryUse.h"

#include <fcntl.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <initializer_list>
#include <memory>
#include <string>

namespace pelmora::sandbox {

namespace {

#if defined(__SANITIZE_ADDRESS__)
// Its runtime maps terabytes, and makes pipes to find out whether an address can be read.
constexpr bool kHasAddressSanitizer = true;
#else
constexpr bool kHasAddressSanitizer = false;
#endif

constexpr rlim_t kMaxDescriptors = 16;      // each may be memory that is handed over
constexpr rlim_t kMaxCpuSeconds = 20 * 60;  // in all its life; it retires long before

Error refused(const char* what, int error) {
  return Error{std::string(what) + ": " + platform::systemErrorText(error)};
}

// Limits ------------------------------------------------------------------------------------------

bool setLimit(__rlimit_resource resource, rlim_t value) {
  rlimit limit{};
  if (getrlimit(resource, &limit) != 0) return false;
  // What is stricter already stays so.
  limit.rlim_max = std::min(limit.rlim_max, value);
  limit.rlim_cur = std::min(limit.rlim_cur, value);
  return setrlimit(resource, &limit) == 0;
}

Status setLimits(const Limits& limits) {
  const std::int64_t mapped = MemoryUse().now().mapped;
  if (mapped <= 0) return Error{"what is mapped cannot be told"};
  if (!kHasAddressSanitizer && !setLimit(RLIMIT_AS, static_cast<rlim_t>(mapped + limits.memory))) {
    return refused("limit of memory", errno);
  }
  if (!setLimit(RLIMIT_CORE, 0) ||
      !setLimit(RLIMIT_FSIZE, static_cast<rlim_t>(limits.handedOver)) ||
      !setLimit(RLIMIT_NOFILE, kMaxDescriptors) || !setLimit(RLIMIT_CPU, kMaxCpuSeconds)) {
    return refused("limits", errno);
  }
  return Done{};
}

Status giveUpPrivileges() {
  // Not dumpable: no other process of the user can look into it either.
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) != 0) {
    return refused("privileges", errno);
  }
  return Done{};
}

// Landlock ----------------------------------------------------------------------------------------

// Not from <linux/landlock.h>, which may be older than the kernel that runs.
struct LandlockRuleset {
  std::uint64_t files = 0;
  std::uint64_t network = 0;
  std::uint64_t scopes = 0;
};
constexpr long kCreateRuleset = 444;  // the same number on every architecture
constexpr long kRestrictSelf = 446;
constexpr unsigned kAskVersion = 1;

/// Everything that a kernel's version of Landlock can deny.
LandlockRuleset everything(long version) {
  const auto firstBits = [](int count) { return (std::uint64_t{1} << count) - 1; };
  LandlockRuleset all;
  all.files = firstBits(version >= 5 ? 16 : version >= 3 ? 15 : version >= 2 ? 14 : 13);
  if (version >= 4) all.network = firstBits(2);
  if (version >= 6) all.scopes = firstBits(2);
  return all;
}

Status denyFilesAndNetwork() {
  const long version = syscall(kCreateRuleset, nullptr, 0, kAskVersion);
  if (version <= 0) return Done{};
  const LandlockRuleset all = everything(version);
  const platform::FileDescriptor ruleset(
      static_cast<int>(syscall(kCreateRuleset, &all, sizeof all, 0)));
  if (!ruleset.isOpen() || syscall(kRestrictSelf, ruleset.get(), 0) != 0) {
    return refused("Landlock", errno);
  }
  return Done{};
}

// System calls ------------------------------------------------------------------------------------

constexpr std::uint32_t kCloneThread = 0x00010000;
constexpr std::uint32_t kAtEmptyPath = 0x1000;
#if defined(__s390__)
constexpr unsigned kCloneFlags = 1;
#else
constexpr unsigned kCloneFlags = 0;
#endif

/// A list of rules for libseccomp. Names that this architecture does not have are passed over. The
/// first error is kept.
class CallFilter {
 public:
  explicit CallFilter(std::uint32_t otherwise) : _filter(seccomp_init(otherwise)) {
    if (!_filter) _error = ENOMEM;
  }

  void add(std::uint32_t action, const char* name, std::initializer_list<scmp_arg_cmp> when = {}) {
    const int number = seccomp_syscall_resolve_name(name);
    if (number < 0 || _error != 0) return;
    _error = -seccomp_rule_add_array(_filter.get(), action, number,
                                     static_cast<unsigned>(when.size()), when.begin());
  }
  void add(std::uint32_t action, std::initializer_list<const char*> names) {
    for (const char* name : names) add(action, name);
  }
  void allow(const char* name, std::initializer_list<scmp_arg_cmp> when) {
    add(SCMP_ACT_ALLOW, name, when);
  }

  Status load() {
    if (_error == 0) _error = -seccomp_attr_set(_filter.get(), SCMP_FLTATR_CTL_TSYNC, 1);
    if (_error == 0) _error = -seccomp_load(_filter.get());
    if (_error != 0) return refused("filter of system calls", _error);
    return Done{};
  }

 private:
  struct Release {
    void operator()(void* filter) const { seccomp_release(filter); }
  };
  std::unique_ptr<void, Release> _filter;
  int _error = 0;
};

void allowHarmless(CallFilter& filter) {
  filter.add(SCMP_ACT_ALLOW, {"brk",
                              "clock_getres",
                              "clock_gettime",
                              "clock_gettime64",
                              "clock_nanosleep",
                              "clock_nanosleep_time64",
                              "exit",
                              "exit_group",
                              "futex",
                              "futex_time64",
                              "getcpu",
                              "getpid",
                              "getppid",
                              "getrandom",
                              "getrlimit",
                              "getrusage",
                              "gettid",
                              "gettimeofday",
                              "madvise",
                              "membarrier",
                              "mremap",
                              "munmap",
                              "nanosleep",
                              "restart_syscall",
                              "rseq",
                              "rt_sigaction",
                              "rt_sigprocmask",
                              "rt_sigreturn",
                              "sched_getaffinity",
                              "sched_yield",
                              "set_robust_list",
                              "sigaltstack",
                              "sigreturn",
                              "sysinfo",
                              "time",
                              "ugetrlimit",
                              "uname"});
}

void allowOpenDescriptors(CallFilter& filter) {
  filter.add(SCMP_ACT_ALLOW, {"_llseek", "close", "dup", "fstat", "fstat64", "ftruncate",
                              "ftruncate64", "lseek", "poll", "ppoll", "ppoll_time64", "pread64",
                              "preadv", "read", "readv", "recvmsg", "sendmsg", "write", "writev"});
  // The way in which newer C libraries ask for what is open already.
  filter.allow("newfstatat", {SCMP_A3(SCMP_CMP_MASKED_EQ, kAtEmptyPath, kAtEmptyPath)});
  filter.allow("fstatat64", {SCMP_A3(SCMP_CMP_MASKED_EQ, kAtEmptyPath, kAtEmptyPath)});
  filter.allow("statx", {SCMP_A2(SCMP_CMP_MASKED_EQ, kAtEmptyPath, kAtEmptyPath)});
  for (const char* name : {"fcntl", "fcntl64"}) {
    for (const int command :
         {F_GETFD, F_SETFD, F_GETFL, F_DUPFD_CLOEXEC, F_ADD_SEALS, F_GET_SEALS}) {
      filter.allow(name, {SCMP_A1(SCMP_CMP_EQ, static_cast<unsigned>(command))});
    }
  }
}

void allowMemoryAndThreads(CallFilter& filter) {
  for (const char* name : {"mmap", "mmap2", "mprotect"}) {
    filter.allow(name, {SCMP_A2(SCMP_CMP_MASKED_EQ, PROT_EXEC, 0)});
  }
  for (const unsigned extra : {0U, 8U}) {  // 8: MFD_NOEXEC_SEAL, which older headers lack
    filter.allow("memfd_create", {SCMP_A1(SCMP_CMP_EQ, MFD_CLOEXEC | MFD_ALLOW_SEALING | extra)});
  }
  filter.allow("clone", {SCMP_CMP(kCloneFlags, SCMP_CMP_MASKED_EQ, kCloneThread, kCloneThread)});
  // Its flags lie in memory, where no filter sees them; the C library then takes clone.
  filter.add(SCMP_ACT_ERRNO(ENOSYS), "clone3");
  filter.allow("prctl", {SCMP_A0(SCMP_CMP_EQ, PR_SET_NAME)});
}

/// Its own time limits, and its own end.
void allowLimits(CallFilter& filter) {
  filter.add(SCMP_ACT_ALLOW, {"alarm", "setitimer"});
  filter.allow("setrlimit", {SCMP_A0(SCMP_CMP_EQ, RLIMIT_CPU)});
  filter.allow("prlimit64", {SCMP_A0(SCMP_CMP_EQ, 0), SCMP_A1(SCMP_CMP_EQ, RLIMIT_CPU)});
  filter.allow("prlimit64", {SCMP_A0(SCMP_CMP_EQ, 0), SCMP_A2(SCMP_CMP_EQ, 0)});
  filter.allow("tgkill", {SCMP_A0(SCMP_CMP_EQ, static_cast<std::uint64_t>(getpid()))});
}

Status denyOtherCalls() {
  CallFilter filter(SCMP_ACT_ERRNO(EPERM));
  allowHarmless(filter);
  allowOpenDescriptors(filter);
  allowMemoryAndThreads(filter);
  allowLimits(filter);
  if (kHasAddressSanitizer) filter.add(SCMP_ACT_ALLOW, {"pipe", "pipe2"});
  // Libraries that look for a file are used to this answer.
  filter.add(SCMP_ACT_ERRNO(EACCES), {"access", "faccessat", "faccessat2", "lstat", "open",
                                      "openat", "openat2", "readlink", "readlinkat", "stat"});
  return filter.load();
}

}  // namespace

Status enterSandbox(const Limits& limits) {
  if (const Status status = setLimits(limits); !status) return status;
  if (const Status status = giveUpPrivileges(); !status) return status;
  if (const Status status = denyFilesAndNetwork(); !status) return status;
  return denyOtherCalls();
}

}  // namespace pelmora::sandbox
