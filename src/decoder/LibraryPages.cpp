#include "decoder/LibraryPages.h"

#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>

namespace pelmora::decoder {

namespace {

/// Of segments that cannot be written alone: nothing of theirs can be lost.
int giveBackSegments(dl_phdr_info* object, std::size_t, void*) {
  const auto page = static_cast<ElfW(Addr)>(sysconf(_SC_PAGESIZE));
  for (int i = 0; i < object->dlpi_phnum; ++i) {
    const ElfW(Phdr)& segment = object->dlpi_phdr[i];
    if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0) continue;
    const ElfW(Addr) begin = object->dlpi_addr + segment.p_vaddr;
    // Inwards to whole pages: the first and the last may be shared with another segment.
    const ElfW(Addr) first = (begin + page - 1) / page * page;
    const ElfW(Addr) end = (begin + segment.p_memsz) / page * page;
    // What the kernel refuses (its own page among the libraries) stays.
    if (end > first) madvise(reinterpret_cast<void*>(first), end - first, MADV_DONTNEED);
  }
  return 0;
}

}  // namespace

void giveBackLibraryPages() { dl_iterate_phdr(giveBackSegments, nullptr); }

}  // namespace pelmora::decoder
