#pragma once

#include "platform/PropertyList.h"

namespace pelmora::platform {
class Bookmarks;
class UserFolders;
}  // namespace pelmora::platform

namespace pelmora::view {

inline constexpr int kDefaultNumImages = 5;
inline constexpr double kDefaultDelay = 4.0;  // seconds

/// The values that a preference store reads where nothing was written: framed cards, no track, five
/// cards, four seconds, and one source, the user's pictures folder as it is now.
[[nodiscard]] plist::Dictionary moduleDefaults(const platform::UserFolders& userFolders,
                                               const platform::Bookmarks& bookmarks);

}  // namespace pelmora::view
