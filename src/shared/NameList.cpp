#include "shared/NameList.h"

#include <algorithm>
#include <cassert>
#include <limits>
#include <utility>

namespace pelmora {

std::string_view NameList::operator[](std::size_t index) const {
  assert(index < _size);
  const std::size_t block = index / kStride;
  Iterator at(_bytes.data() + (block == 0 ? 0 : _offsets[block - 1]));
  for (std::size_t i = block * kStride; i < index; ++i) ++at;
  return *at;
}

bool NameList::contains(std::string_view name) const {
  return std::find(begin(), end(), name) != end();
}

std::size_t NameList::heapBytes() const {
  return _bytes.capacity() + _offsets.capacity() * sizeof(std::uint32_t);
}

bool NameListBuilder::append(std::string_view name) {
  std::vector<char>& bytes = _list._bytes;
  if (name.size() > NameList::kMaxNameLength) return false;
  if (bytes.size() > std::numeric_limits<std::uint32_t>::max() - 1 - name.size()) return false;
  if (_list._size != 0 && _list._size % NameList::kStride == 0) {
    _list._offsets.push_back(static_cast<std::uint32_t>(bytes.size()));
  }
  bytes.push_back(static_cast<char>(static_cast<unsigned char>(name.size())));
  bytes.insert(bytes.end(), name.begin(), name.end());
  ++_list._size;
  return true;
}

SharedNames NameListBuilder::finish() {
  auto list = std::make_shared<NameList>(std::exchange(_list, NameList()));
  list->_bytes.shrink_to_fit();
  list->_offsets.shrink_to_fit();
  return list;
}

SharedNames makeNameList(const std::vector<std::string>& names) {
  NameListBuilder builder;
  for (const std::string& name : names) builder.append(name);
  return builder.finish();
}

}  // namespace pelmora
