#include "platform/fake/FakeServices.h"
#include "sources/SourceEntry.h"

#include <cstdint>
#include <cstdlib>

// Any value as a stored source: it is an entry that is the same once it was stored again, or an
// error.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora;
  const auto read = plist::read({data, size});
  if (!read) return 0;
  platform::FakeServices fakes;
  const platform::Services services = fakes.services();
  const auto entry = sources::resolveStoredEntry(*read, services);
  if (!entry) return 0;
  if (entry->url.empty()) std::abort();
  const auto again = sources::resolveStoredEntry(
      plist::Value(sources::storedForm(*entry, services.bookmarks)), services);
  const bool isSame = again && again->url == entry->url && again->enabled == entry->enabled &&
                      again->chance == entry->chance && again->days == entry->days &&
                      again->screens == entry->screens;
  if (!isSame) std::abort();
  return 0;
}
