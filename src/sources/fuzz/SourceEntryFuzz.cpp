#include "platform/fake/FakeServices.h"
#include "sources/SourceEntry.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

// Any value as a stored source: it is an entry that can be stored again, or an error.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora;
  const auto read = plist::read({data, size});
  if (!read) return 0;
  platform::FakeServices fakes;
  const platform::Services services = fakes.services();
  const auto entry = sources::resolveStoredEntry(*read, services);
  if (!entry) return 0;
  if (entry->url.empty()) std::abort();
  static_cast<void>(sources::storedForm(*entry, services.bookmarks));
  return 0;
}
