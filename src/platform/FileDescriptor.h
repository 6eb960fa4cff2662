#pragma once

#include <unistd.h>

#include <utility>

namespace pelmora::platform {

/// Owns an open file descriptor. Thread: a plain value.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : _descriptor(descriptor) {}
  ~FileDescriptor() {
    if (isOpen()) ::close(_descriptor);
  }
  FileDescriptor(FileDescriptor&& other) noexcept
      : _descriptor(std::exchange(other._descriptor, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(_descriptor, other._descriptor);
    return *this;
  }

  [[nodiscard]] bool isOpen() const { return _descriptor >= 0; }
  [[nodiscard]] int get() const { return _descriptor; }

 private:
  int _descriptor = -1;
};

}  // namespace pelmora::platform
