#include "host/DescriptorLimit.h"

#include <sys/resource.h>

#include <algorithm>
#include <string>

namespace pelmora::host {

Status ensureDescriptors(std::size_t fewest) {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= fewest) return Done{};
  limit.rlim_cur = std::min<rlim_t>(fewest, limit.rlim_max);
  if (limit.rlim_cur == fewest && setrlimit(RLIMIT_NOFILE, &limit) == 0) return Done{};
  return Error{"only " + std::to_string(limit.rlim_cur) + " files may be open, and it needs " +
               std::to_string(fewest)};
}

}  // namespace pelmora::host
