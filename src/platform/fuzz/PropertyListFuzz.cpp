#include "platform/PropertyList.h"

#include <cstdint>
#include <cstdlib>

// Any bytes as a property list of either form: what is read can be written, and comes back from
// there.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora;
  const auto read = plist::read({data, size});
  if (!read) return 0;
  const plist::Bytes written = plist::writeBinary(*read);
  const auto again = plist::read(written);
  // Compared as bytes: a number that is none equals nothing.
  if (!again || plist::writeBinary(*again) != written) std::abort();
  return 0;
}
