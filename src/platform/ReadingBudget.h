#pragma once

#include <cstddef>
#include <cstdint>

namespace pelmora::plist {

/// How much memory the values read from untrusted bytes may take. Objects of a property list may be
/// referred to many times, and each use becomes a value of its own, so a small file could ask for
/// any amount. What a file can hold without such sharing always fits. Thread: one at a time.
class ReadingBudget {
 public:
  /// How deep containers may lie in one another.
  static constexpr int kMaxDepth = 128;
  /// What a value costs beside its text or data.
  static constexpr std::uint64_t kValueCost = 64;

  explicit ReadingBudget(std::size_t inputSize) : _left(kFlat + kPerByte * inputSize) {}

  /// False when less than that is left.
  [[nodiscard]] bool spend(std::uint64_t bytes) {
    if (bytes > _left) return false;
    _left -= bytes;
    return true;
  }

 private:
  static constexpr std::uint64_t kFlat = 1 << 20;
  static constexpr std::uint64_t kPerByte = 128;

  std::uint64_t _left;
};

}  // namespace pelmora::plist
