#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace pelmora::cards {

/// A typeface for a card. Thread: a plain value.
struct CardFont {
  /// In order: the first that has a character shows it. Ends in families for emoji and for the
  /// scripts that a hand lacks.
  QStringList families;
  /// What its size is multiplied by to look as large as the others.
  double sizeFactor = 1;
  /// Above and below the baseline, in fractions of the size before the factor; 0 for the font's
  /// own.
  double ascent = 0;
  double descent = 0;
  bool operator==(const CardFont&) const = default;
};

/// The hands that captions are written in, six whatever is installed, made at the first call.
/// Thread: any.
[[nodiscard]] const std::vector<CardFont>& captionFonts();

/// The typeface of the tags: the desktop's own.
[[nodiscard]] CardFont tagFont();

/// Gives each of the six hands an installed family: its own, else a stand-in of like character,
/// else a hand that no other uses, else one that another uses. An empty text where there is no hand
/// at all: the user's font then.
[[nodiscard]] QStringList chooseHands(const QStringList& installedFamilies);

}  // namespace pelmora::cards
