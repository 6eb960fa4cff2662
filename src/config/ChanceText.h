#pragma once

#include <QString>

#include <optional>

class QLocale;

namespace pelmora::config {

// The chance of a source as it is read and typed, in percent.

inline constexpr double kLowestChance = 0.001;
inline constexpr double kHighestChance = 100;

/// The shortest text that reads back as the number, with a point whatever the user's language.
[[nodiscard]] QString chanceText(double chance);

/// What was typed, with its number written with a point where it was written as in the user's
/// language: "0,5" becomes "0.5" where a comma stands before the decimals. Every other text stays
/// as it is.
[[nodiscard]] QString withDecimalPoint(const QString& typed, const QLocale& locale);

/// The nearer bound, where the number that a text begins with lies beyond; nullopt where it is one
/// between the two.
[[nodiscard]] std::optional<QString> correctedChance(const QString& text, double lowest,
                                                     double highest);

}  // namespace pelmora::config
