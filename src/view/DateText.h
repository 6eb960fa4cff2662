#pragma once

#include "shared/ReferenceTime.h"

#include <string>

namespace pelmora::view {

// Moments as the user's language and country write them, in the user's time zone. UTF-8.

/// The locale in which the user wants dates, by its POSIX name, such as "de_DE.UTF-8".
[[nodiscard]] std::string formatLocale();

/// A short date and a time with seconds: "21.11.26, 12:00:00".
[[nodiscard]] std::string dateAndTimeText(ReferenceTime moment, const std::string& locale);

/// The time alone.
[[nodiscard]] std::string timeText(ReferenceTime moment, const std::string& locale);

}  // namespace pelmora::view
