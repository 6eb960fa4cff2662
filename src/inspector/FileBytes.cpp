#include "inspector/FileBytes.h"

#include <sys/mman.h>
#include <unistd.h>

namespace pelmora::inspector {

FileBytes::FileBytes(int descriptor, std::size_t size) {
  if (size <= kCopied) {
    copy(descriptor, size);
  } else {
    map(descriptor, size);
  }
}

FileBytes::~FileBytes() {
  if (_copy || _bytes.empty()) return;
  munmap(const_cast<std::uint8_t*>(_bytes.data()), _bytes.size());
}

void FileBytes::copy(int descriptor, std::size_t size) {
  _copy = std::make_unique_for_overwrite<std::uint8_t[]>(size);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t length =
        pread(descriptor, _copy.get() + done, size - done, static_cast<off_t>(done));
    if (length <= 0) break;
    done += static_cast<std::size_t>(length);
  }
  _bytes = {_copy.get(), done};
}

void FileBytes::map(int descriptor, std::size_t size) {
  void* const mapping = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
  if (mapping != MAP_FAILED) _bytes = {static_cast<const std::uint8_t*>(mapping), size};
}

}  // namespace pelmora::inspector
