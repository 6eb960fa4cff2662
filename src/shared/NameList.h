#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora {

/// The names of a folder's files, immutable, in one block: each name is a length byte and its bytes
/// (the kernel's limit is 255), and the offset of every sixteenth is kept for random access. A name
/// costs 1.25 bytes beyond its own, where a `std::string` costs 16 to 48.
/// Thread: immutable once built, so shared freely (`std::shared_ptr<const NameList>`).
class NameList {
 public:
  static constexpr std::size_t kMaxNameLength = 255;

  /// Forward iterator over the names, in order. Cheaper than indexing.
  class Iterator {
   public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = std::string_view;
    using difference_type = std::ptrdiff_t;
    using pointer = const std::string_view*;
    using reference = std::string_view;

    Iterator() = default;
    explicit Iterator(const char* at) : _at(at) {}
    std::string_view operator*() const { return {_at + 1, static_cast<unsigned char>(*_at)}; }
    Iterator& operator++() {
      _at += 1 + static_cast<unsigned char>(*_at);
      return *this;
    }
    Iterator operator++(int) {
      Iterator before = *this;
      ++*this;
      return before;
    }
    bool operator==(const Iterator&) const = default;

   private:
    const char* _at = nullptr;
  };

  NameList() = default;

  [[nodiscard]] std::size_t size() const { return _size; }
  [[nodiscard]] bool empty() const { return _size == 0; }
  /// The name at `index`, which must be below `size()`.
  [[nodiscard]] std::string_view operator[](std::size_t index) const;
  [[nodiscard]] Iterator begin() const { return Iterator(_bytes.data()); }
  [[nodiscard]] Iterator end() const { return Iterator(_bytes.data() + _bytes.size()); }
  [[nodiscard]] bool contains(std::string_view name) const;
  bool operator==(const NameList& other) const { return _bytes == other._bytes; }

  /// Bytes on the heap, for the memory benchmark.
  [[nodiscard]] std::size_t heapBytes() const;

 private:
  friend class NameListBuilder;
  static constexpr std::size_t kStride = 16;

  std::vector<char> _bytes;
  std::vector<std::uint32_t> _offsets;  // of names kStride, 2 kStride, …; name 0 is at 0
  std::size_t _size = 0;
};

using SharedNames = std::shared_ptr<const NameList>;

/// Gathers names into a `NameList`.
class NameListBuilder {
 public:
  /// Appends a name; false (and nothing appended) when it is longer than a file name can be or the
  /// list is full.
  bool append(std::string_view name);
  [[nodiscard]] std::size_t size() const { return _list._size; }
  /// The list, at its exact size. The builder is empty afterwards.
  [[nodiscard]] SharedNames finish();

 private:
  NameList _list;
};

/// A list of the given names; a convenience for short lists.
[[nodiscard]] SharedNames makeNameList(const std::vector<std::string>& names);

}  // namespace pelmora
