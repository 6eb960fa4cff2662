#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace pelmora::inspector {

/// The bytes of a file: a copy of a small one, which takes less time than a mapping, and of a
/// larger one a mapping. Where that file is made shorter meanwhile, touching what is gone ends the
/// process (SIGBUS). Thread: any. Errors: no bytes.
class FileBytes {
 public:
  static constexpr std::size_t kCopied = 64 << 10;

  FileBytes(int descriptor, std::size_t size);
  ~FileBytes();
  FileBytes(const FileBytes&) = delete;
  FileBytes& operator=(const FileBytes&) = delete;

  [[nodiscard]] std::span<const std::uint8_t> all() const { return _bytes; }

 private:
  void copy(int descriptor, std::size_t size);
  void map(int descriptor, std::size_t size);

  std::unique_ptr<std::uint8_t[]> _copy;
  std::span<const std::uint8_t> _bytes;
};

}  // namespace pelmora::inspector
