#include "platform/ThreadPriority.h"

#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace pelmora::platform {

void yieldToEverythingElse() {
  const sched_param parameters{};
  sched_setscheduler(0, SCHED_BATCH, &parameters);
  setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), 19);
  constexpr int kWhoProcess = 1;  // the C library has no names for these
  constexpr int kClassIdle = 3 << 13;
  syscall(SYS_ioprio_set, kWhoProcess, 0, kClassIdle);
}

}  // namespace pelmora::platform
