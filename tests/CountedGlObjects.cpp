#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <dlfcn.h>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

// To be loaded before a program that draws by EGL: how many objects of each kind it holds in the
// graphics processor is kept in the file that PELMORA_TEST_GL_COUNTS names, a 64-bit number each.

namespace {

using Function = void (*)();
using Names = void (*)(std::int32_t count, std::uint32_t* names);
using ConstNames = void (*)(std::int32_t count, const std::uint32_t* names);

enum Kind : std::size_t { textures, buffers, framebuffers, renderbuffers, kindCount };

struct Shared {
  std::array<std::atomic<std::int64_t>, kindCount> alive;
};

Shared& shared() {
  static Shared& counts = []() -> Shared& {
    static Shared nowhere{};
    const char* const path = std::getenv("PELMORA_TEST_GL_COUNTS");
    const int file = path ? open(path, O_RDWR | O_CLOEXEC) : -1;
    if (file < 0) return nowhere;
    void* mapped = MAP_FAILED;
    if (ftruncate(file, sizeof(Shared)) == 0) {
      mapped = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    }
    close(file);
    return mapped == MAP_FAILED ? nowhere : *static_cast<Shared*>(mapped);
  }();
  return counts;
}

/// The library's own functions, filled in when the program asks for them.
std::array<Names, kindCount> makers;
std::array<ConstNames, kindCount> takers;

template <Kind kind>
void make(std::int32_t count, std::uint32_t* names) {
  makers[kind](count, names);
  shared().alive[kind] += count;
}

template <Kind kind>
void take(std::int32_t count, const std::uint32_t* names) {
  takers[kind](count, names);
  for (std::int32_t i = 0; i < count; ++i) {
    if (names[i] != 0) --shared().alive[kind];  // 0 is no object, and may be deleted
  }
}

template <Kind kind>
Function counted(const char* name, const char* maker, const char* taker, Function function) {
  if (std::strcmp(name, maker) == 0) {
    makers[kind] = reinterpret_cast<Names>(function);
    return reinterpret_cast<Function>(make<kind>);
  }
  if (std::strcmp(name, taker) == 0) {
    takers[kind] = reinterpret_cast<ConstNames>(function);
    return reinterpret_cast<Function>(take<kind>);
  }
  return nullptr;
}

}  // namespace

extern "C" Function eglGetProcAddress(const char* name) {
  static const auto find =
      reinterpret_cast<Function (*)(const char*)>(dlsym(RTLD_NEXT, "eglGetProcAddress"));
  const Function function = find ? find(name) : nullptr;
  if (!function) return nullptr;
  for (const Function found :
       {counted<textures>(name, "glGenTextures", "glDeleteTextures", function),
        counted<buffers>(name, "glGenBuffers", "glDeleteBuffers", function),
        counted<framebuffers>(name, "glGenFramebuffers", "glDeleteFramebuffers", function),
        counted<renderbuffers>(name, "glGenRenderbuffers", "glDeleteRenderbuffers", function)}) {
    if (found) return found;
  }
  return function;
}
