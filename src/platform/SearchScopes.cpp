#include "platform/SearchScopes.h"

#include <utility>

namespace pelmora::platform {

SearchScopes::SearchScopes(const std::vector<std::string>& folders)
    : _all(std::make_shared<std::deque<std::string>>(folders.begin(), folders.end())),
      _size(folders.size()) {}

void SearchScopes::append(std::string folder) {
  const bool isShared = _all->size() != _size;  // a copy was quicker to append
  if (isShared) *this = SearchScopes(all());
  _all->push_back(std::move(folder));
  ++_size;
}

std::vector<std::string> SearchScopes::all() const {
  return {_all->cbegin(), _all->cbegin() + static_cast<std::ptrdiff_t>(_size)};
}

bool SearchScopes::continues(const SearchScopes& other) const {
  return _all == other._all && _size >= other._size;
}

}  // namespace pelmora::platform
