#include "platform/KeyedArchive.h"

#include <cstdint>
#include <cstdlib>

// Any bytes as a keyed archive: what is read can be archived, and comes back from there.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora;
  const auto read = plist::unarchive({data, size});
  if (!read) return 0;
  const plist::Bytes written = plist::archive(*read);
  const auto again = plist::unarchive(written);
  if (!again || plist::archive(*again) != written) std::abort();
  return 0;
}
