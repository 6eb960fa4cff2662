#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace pelmora::cache {

/// Numbers texts by first sight: equal texts get the same number. Made for a million names at a
/// time. The texts are borrowed. Thread: one at a time.
class TextTable {
 public:
  TextTable();

  /// Appends the number of each text, from 0, to `numbers`.
  void add(std::span<const std::string_view> texts, std::vector<std::uint32_t>& numbers);
  /// The different texts, by number.
  [[nodiscard]] const std::vector<std::string_view>& texts() const { return _texts; }
  /// Gives back the memory of all but the texts; nothing may be added afterwards.
  void freeze() { std::vector<Slot>().swap(_slots); }

 private:
  /// The upper half is a part of the text's hash, the lower its number plus one; 0 is an empty
  /// slot.
  using Slot = std::uint64_t;

  std::uint32_t add(std::string_view text, std::uint64_t code);
  void grow();
  /// Where the search for a hash begins. By its upper bits, so that a grown table is filled in
  /// order.
  [[nodiscard]] std::size_t slotOf(std::uint64_t code) const { return code >> _shift; }

  unsigned _shift;
  std::vector<Slot> _slots;
  std::vector<std::string_view> _texts;
};

}  // namespace pelmora::cache
