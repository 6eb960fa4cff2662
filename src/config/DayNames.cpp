#include "config/DayNames.h"

#include "sources/SourceEntry.h"

#include <QCoreApplication>
#include <QStringList>

namespace pelmora::config {

QString dayName(int day, QLocale::FormatType format) {
  return QLocale().standaloneDayName(day == 0 ? kDaysOfWeek : day, format);
}

QString daysText(std::uint64_t days) {
  if ((days & sources::kEveryDay) == sources::kEveryDay) {
    return QCoreApplication::translate("Settings", "Every Day");
  }
  QStringList names;
  for (int day = 0; day < kDaysOfWeek; ++day) {
    if ((days >> day & 1U) != 0) names.append(dayName(day, QLocale::ShortFormat));
  }
  if (names.isEmpty()) return QCoreApplication::translate("Settings", "No Days");
  return QLocale().createSeparatedList(names);
}

}  // namespace pelmora::config
