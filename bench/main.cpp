#include "Benches.h"

#include <cstdio>
#include <cstring>

namespace {

struct Bench {
  const char* name;
  void (*run)();
};

constexpr Bench kBenches[] = {
    {"walk.1M-in-10k", pelmora::bench::benchWalkMillion},
    {"walk.100k-in-50k", pelmora::bench::benchWalkManyFolders},
    {"cache.memory", pelmora::bench::benchCacheMemory},
    {"names", pelmora::bench::benchNames},
    {"pick", pelmora::bench::benchPick},
    {"frame", pelmora::bench::benchFrames},
    {"shown", pelmora::bench::benchHeldFrames},
    {"rest", pelmora::bench::benchAtRest},
    {"first-picture", pelmora::bench::benchFirstPicture},
    {"decode", pelmora::bench::benchDecode},
    {"index", pelmora::bench::benchIndex},
    {"settings", pelmora::bench::benchSettings},
};

}  // namespace

// pelmora_bench [PATTERN]: runs the benchmarks whose name contains the pattern.
int main(int argc, char** argv) {
  const char* pattern = argc > 1 ? argv[1] : "";
  bool any = false;
  for (const Bench& bench : kBenches) {
    if (!std::strstr(bench.name, pattern)) continue;
    any = true;
    bench.run();
  }
  if (any) return 0;
  std::fprintf(stderr, "pelmora_bench: no benchmark's name contains '%s'\n", pattern);
  return 2;
}
