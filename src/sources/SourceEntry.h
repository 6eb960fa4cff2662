#pragma once

#include "platform/Files.h"
#include "platform/PropertyList.h"
#include "platform/Services.h"
#include "shared/FilePath.h"
#include "shared/Result.h"

#include <cstdint>
#include <optional>
#include <string>

namespace pelmora::sources {

inline constexpr std::uint64_t kEveryDay = 127;
inline constexpr double kFullChance = 100;

/// One folder that the user chose, as the source list keeps it. Stored, it is a dictionary of
/// "bookmark", "enabled", "chance", "days" and "screens".
/// Thread: a plain value.
struct SourceEntry {
  bool enabled = true;
  FilePath url;
  double chance = kFullChance;     // percent; the priority of its files is a hundredth of it
  bool isChanceReal = false;       // stored as a real number, whole or not; else as an integer
  std::string screens;             // screens string
  std::uint64_t days = kEveryDay;  // days mask: bit 0 is Sunday
  std::optional<platform::FileIdentity> identity;  // of `url` when it was loaded, if it was there

  [[nodiscard]] double priority() const { return chance / 100.0; }
};

/// The entry that a stored one describes, its bookmark resolved to where the folder is now, or why
/// there is none. "days" and "screens" may be missing: every day, every screen. Any other value
/// that is missing or of a wrong type is logged, and is as in the default entry: on, with full
/// chance. The show then goes on with a folder that the user did choose.
[[nodiscard]] Result<SourceEntry> resolveStoredEntry(const plist::Value& stored,
                                                     const platform::Services& services);

/// The entry as it is stored. A bookmark that cannot be made is left out.
[[nodiscard]] plist::Dictionary storedForm(const SourceEntry& entry,
                                           const platform::Bookmarks& bookmarks);

/// The entry as it is stored, with a bookmark that is made already.
[[nodiscard]] plist::Dictionary storedForm(const SourceEntry& entry, plist::Bytes bookmark);

/// The sources of a user who never chose any: the pictures folder alone.
[[nodiscard]] plist::Array makeDefaultSources(const platform::UserFolders& userFolders,
                                              const platform::Bookmarks& bookmarks);

}  // namespace pelmora::sources
