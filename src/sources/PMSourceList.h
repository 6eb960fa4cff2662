#pragma once

#include "platform/Image.h"
#include "platform/Services.h"
#include "shared/FilePath.h"

#include <cstdint>
#include <memory>
#include <optional>

// (sketch: the surface that the view uses; the rest is the sources' own)
namespace pelmora::sources {

/// What a view is handed to show.
struct ImagePick {
  platform::Image image;
  FilePath url;
};

class PMSourceList {
 public:
  static std::shared_ptr<PMSourceList> sharedSourceList(const platform::Services& services);
  static void endSharedSourceList();

  explicit PMSourceList(const platform::Services& services);
  ~PMSourceList();

  void loadSourcesFromPrefs(platform::PreferencesStore& prefs, bool enumerateFolders,
                            bool doSecurityScoped);
  void unloadSources();
  void cancelOperations();
  [[nodiscard]] std::optional<ImagePick> randomImageAndURLForScreenIndex(std::uint64_t screenIndex);
  [[nodiscard]] std::optional<FilePath> randomURLForScreenIndex(std::uint64_t screenIndex);
};

}  // namespace pelmora::sources
