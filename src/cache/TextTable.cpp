#include "cache/TextTable.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>

namespace pelmora::cache {

namespace {

constexpr std::uint64_t kHashBits = 0xFFFFFFFF00000000;
constexpr unsigned kFirstBits = 10;  // of the number of slots at first

// std::hash takes longer for a name than all else that is done with it.
std::uint64_t hash(std::string_view text) {
  constexpr std::uint64_t kMultiplier = 0x9E3779B97F4A7C15;
  std::uint64_t state = text.size() * kMultiplier;
  const auto mix = [&state](std::uint64_t word) {
    state = (state ^ word) * kMultiplier;
    state ^= state >> 32;
  };
  std::size_t at = 0;
  for (; at + sizeof(std::uint64_t) <= text.size(); at += sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, sizeof word);
    mix(word);
  }
  std::uint64_t rest = 0;
  std::memcpy(&rest, text.data() + at, text.size() - at);
  mix(rest);
  return state * kMultiplier;
}

}  // namespace

TextTable::TextTable() : _shift(64 - kFirstBits), _slots(std::size_t{1} << kFirstBits) {}

// In two passes over a few texts at a time: the memory of a large table answers to all of the first
// pass's questions at once, where a single pass would wait for it name by name.
void TextTable::add(std::span<const std::string_view> texts, std::vector<std::uint32_t>& numbers) {
  assert(!_slots.empty() && "nothing is added to a frozen table");
  std::array<std::uint64_t, 32> codes{};
  while (!texts.empty()) {
    const std::size_t count = std::min(texts.size(), codes.size());
    if ((_texts.size() + count) * 2 > _slots.size()) grow();
    for (std::size_t i = 0; i < count; ++i) {
      codes[i] = hash(texts[i]);
      __builtin_prefetch(&_slots[slotOf(codes[i])]);
    }
    for (std::size_t i = 0; i < count; ++i) numbers.push_back(add(texts[i], codes[i]));
    texts = texts.subspan(count);
  }
}

std::uint32_t TextTable::add(std::string_view text, std::uint64_t code) {
  const std::size_t mask = _slots.size() - 1;
  for (std::size_t at = slotOf(code);; at = (at + 1) & mask) {
    const Slot slot = _slots[at];
    if (slot == 0) {
      const auto number = static_cast<std::uint32_t>(_texts.size());
      _slots[at] = (code & kHashBits) | (number + 1);
      _texts.push_back(text);
      return number;
    }
    const auto number = static_cast<std::uint32_t>(slot & ~kHashBits) - 1;
    if ((slot & kHashBits) == (code & kHashBits) && _texts[number] == text) return number;
  }
}

void TextTable::grow() {
  const std::vector<Slot> old = std::move(_slots);
  _slots = std::vector<Slot>(old.size() * 2);
  --_shift;
  const std::size_t mask = _slots.size() - 1;
  for (const Slot slot : old) {
    if (slot == 0) continue;
    std::size_t at = slotOf(slot);
    while (_slots[at] != 0) at = (at + 1) & mask;
    _slots[at] = slot;
  }
}

}  // namespace pelmora::cache
