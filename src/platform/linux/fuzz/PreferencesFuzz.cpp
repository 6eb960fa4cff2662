#include "platform/fake/RecordingLog.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/linux/FilePreferencesStore.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

// Any bytes as the preferences' file: what is stored reads the same twice, whatever its type, and
// the file can be written again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora;
  static const platform::TemporaryFolder folder;
  const FilePath file = folder.write("Preferences.plist",
                                     std::string_view(reinterpret_cast<const char*>(data), size));
  platform::RecordingLog log;
  platform::FilePreferencesStore store(file, log);
  plist::Dictionary stored = store.storedValues();
  for (const auto& [key, value] : stored) {
    static_cast<void>(store.integerForKey(key));
    static_cast<void>(store.doubleForKey(key));
    static_cast<void>(store.arrayForKey(key));
    static_cast<void>(store.dictionaryForKey(key));
  }
  store.setObject("Delay", 4.0);
  if (!store.synchronize()) std::abort();
  platform::FilePreferencesStore again(file, log);
  plist::Dictionary kept = again.storedValues();
  stored.erase("Delay");
  if (kept.erase("Delay") != 1) std::abort();
  // As bytes: what is not a number equals nothing.
  if (plist::writeBinary(plist::Value(kept)) != plist::writeBinary(plist::Value(stored)))
    std::abort();
  return 0;
}
