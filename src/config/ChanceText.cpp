#include "config/ChanceText.h"

#include "config/LeadingNumber.h"

#include <QLocale>

#include <array>
#include <charconv>

namespace pelmora::config {

QString chanceText(double chance) {
  std::array<char, 32> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), chance).ptr;
  return QString::fromLatin1(text.data(), end - text.data());
}

QString withDecimalPoint(const QString& typed, const QLocale& locale) {
  const QString mark = locale.decimalPoint();
  if (mark == QLatin1String(".") || !typed.contains(mark)) return typed;
  QLocale strict = locale;
  strict.setNumberOptions(QLocale::RejectGroupSeparator);
  bool isNumber = false;
  const double value = strict.toDouble(typed.trimmed(), &isNumber);
  return isNumber ? chanceText(value) : typed;
}

std::optional<QString> correctedChance(const QString& text, double lowest, double highest) {
  const double value = leadingNumber(text.toStdString());
  if (value < lowest) return chanceText(lowest);
  if (value > highest) return chanceText(highest);
  return std::nullopt;
}

}  // namespace pelmora::config
