#include "cache/FolderCache.h"
#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

// Any bytes as the cache's file: it is read or refused, answers for any folder, and what is saved
// then can be read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora;
  static const platform::TemporaryFolder folder;
  folder.write("Pelmora/FolderCache.plist",
               std::string_view(reinterpret_cast<const char*>(data), size));
  platform::FakeServices fakes;
  fakes.userFolders.cachesFolders = {folder.path()};
  const platform::Services services = fakes.services();
  cache::FolderCache cache(services);
  const bool isRead = cache.loadForAppName("Pelmora");
  const FilePath known("/pictures/a");
  if (const auto entry = cache.cachedFolder(known); isRead && entry && entry->fileNames) {
    for (std::size_t i = 0; i < entry->fileNames->size(); ++i) {
      const std::string_view name = (*entry->fileNames)[i];
      // None leaves its folder.
      if (name.empty() || name == "." || name == ".." ||
          name.find_first_of(std::string_view("/\0", 2)) != std::string_view::npos) {
        std::abort();
      }
    }
  }
  static_cast<void>(cache.mdateOfFolder(known));
  cache.addFolder(FilePath("/pictures/b"), makeNameList({"1.jpg"}), nullptr, ReferenceTime{1});
  cache.saveForAppName("Pelmora");
  cache::FolderCache again(services);
  if (!again.loadForAppName("Pelmora") || !again.cachedFolder(FilePath("/pictures/b")))
    std::abort();
  return 0;
}
