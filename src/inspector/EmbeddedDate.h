#pragma once

#include "shared/ReferenceTime.h"

#include <optional>
#include <string_view>

namespace pelmora::inspector {

/// A date as Exif, IPTC or XMP write it: "2021:05:06 07:08:09", "2021-05-06T07:08:09.5+02:00",
/// "2021-05". What is missing is the first one of its kind; without an offset it is local time.
/// nullopt for what is no date, or for none ("0000:00:00 00:00:00"). Thread: any.
[[nodiscard]] std::optional<ReferenceTime> dateFromText(std::string_view text);

}  // namespace pelmora::inspector
