#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace pelmora::platform {

/// Bytes that never change, shared by all copies: a vector's own, or memory of another owner (such
/// as a mapping) that is kept as long as any copy is. Thread: any, as nothing can be written.
class SharedBytes {
 public:
  SharedBytes() = default;
  // Implicit on purpose: whoever has painted into a vector hands it over.
  SharedBytes(std::vector<std::uint8_t> bytes) {
    auto own = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
    _bytes = *own;
    _owner = std::move(own);
  }
  SharedBytes(std::shared_ptr<const void> owner, std::span<const std::uint8_t> bytes)
      : _owner(std::move(owner)), _bytes(bytes) {}

  [[nodiscard]] const std::uint8_t* data() const { return _bytes.data(); }
  [[nodiscard]] std::size_t size() const { return _bytes.size(); }
  [[nodiscard]] auto begin() const { return _bytes.begin(); }
  [[nodiscard]] auto end() const { return _bytes.end(); }
  const std::uint8_t& operator[](std::size_t index) const { return _bytes[index]; }

 private:
  std::shared_ptr<const void> _owner;
  std::span<const std::uint8_t> _bytes;
};

}  // namespace pelmora::platform
