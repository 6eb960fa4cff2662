#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace pelmora::platform {

/// The folders that a query searches, in order. A copy shares what both have, so that to copy ten
/// thousand folders and append one, which each new folder asks for, costs that one alone.
/// Thread: main, copies included.
class SearchScopes {
 public:
  SearchScopes() = default;
  explicit SearchScopes(const std::vector<std::string>& folders);

  void append(std::string folder);
  [[nodiscard]] std::size_t size() const { return _size; }
  [[nodiscard]] bool empty() const { return _size == 0; }
  [[nodiscard]] const std::string& operator[](std::size_t index) const { return (*_all)[index]; }
  [[nodiscard]] std::vector<std::string> all() const;

  /// Whether this is `other`, or a copy of it to which more was appended: told by what is shared.
  [[nodiscard]] bool continues(const SearchScopes& other) const;

  bool operator==(const SearchScopes& other) const { return all() == other.all(); }

 private:
  /// May have more than is ours, appended by a copy.
  std::shared_ptr<std::deque<std::string>> _all = std::make_shared<std::deque<std::string>>();
  std::size_t _size = 0;
};

}  // namespace pelmora::platform
