#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace pelmora::inspector {

/// A file's bytes for reading. Where the file is made shorter meanwhile, touching what is gone ends
/// the process (SIGBUS). Thread: any. Errors: no bytes.
class MappedFile {
 public:
  MappedFile(int descriptor, std::size_t size);
  ~MappedFile();
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  [[nodiscard]] std::span<const std::uint8_t> bytes() const { return _bytes; }

 private:
  std::span<const std::uint8_t> _bytes;
};

}  // namespace pelmora::inspector
