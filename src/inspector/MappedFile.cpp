#include "inspector/MappedFile.h"

#include <sys/mman.h>

namespace pelmora::inspector {

MappedFile::MappedFile(int descriptor, std::size_t size) {
  void* const mapping = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
  if (mapping != MAP_FAILED) _bytes = {static_cast<const std::uint8_t*>(mapping), size};
}

MappedFile::~MappedFile() {
  if (_bytes.empty()) return;
  munmap(const_cast<std::uint8_t*>(_bytes.data()), _bytes.size());
}

}  // namespace pelmora::inspector
