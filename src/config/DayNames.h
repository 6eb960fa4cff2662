#pragma once

#include <QLocale>
#include <QString>

#include <cstdint>

namespace pelmora::config {

inline constexpr int kDaysOfWeek = 7;

/// The name of a day of the week in the user's language. 0 is Sunday.
[[nodiscard]] QString dayName(int day, QLocale::FormatType format = QLocale::LongFormat);

/// The days of a mask in words: "Every Day", "No Days", or their short names.
[[nodiscard]] QString daysText(std::uint64_t days);

}  // namespace pelmora::config
