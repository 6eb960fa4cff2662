#include "platform/linux/BookmarkRecord.h"

#include <cstdint>
#include <cstdlib>

// Any bytes as a bookmark: what is read can be written, and comes back from
// there.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora;
  const plist::Bytes bytes(data, data + size);
  const auto read = platform::BookmarkRecord::decode(bytes);
  if (!read) return 0;
  const auto again = platform::BookmarkRecord::decode(read->encoded());
  if (!again || !(*again == *read)) std::abort();
  return 0;
}
