#include "cards/CaptionFonts.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>

#include <algorithm>
#include <array>

namespace pelmora::cards {

namespace {

/// The six hands, each with its stand-ins, best first. The last of each row comes with Debian, and
/// no row shares it with another, so that the six differ there.
const std::array<QStringList, 6>& hands() {
  static const std::array<QStringList, 6> rows{{
      {"Noteworthy", "Caveat", "DkgHandwriting"},
      {"Chalkboard", "Kalam", "Purisa"},
      {"Marker Felt Thin", "Marker Felt", "Permanent Marker", "Steve"},
      {"Mistral", "Shadows Into Light", "Kristi"},
      {"SignPainter", "Indie Flower", "Kaushan Script"},
      {"Tekton Pro", "Patrick Hand", "Comic Neue", "Delphine"},
  }};
  return rows;
}

QString firstInstalled(const QStringList& wanted, const QStringList& installed) {
  const auto found = std::find_if(wanted.begin(), wanted.end(), [&](const QString& family) {
    return installed.contains(family, Qt::CaseInsensitive);
  });
  return found == wanted.end() ? QString() : *found;
}

/// Every hand there is, for a row none of whose own is installed.
QString spareHand(const QStringList& installed, const QStringList& used) {
  QString shared;
  for (const QStringList& row : hands()) {
    const QString family = firstInstalled(row, installed);
    if (family.isEmpty()) continue;
    for (const QString& other : row) {
      if (installed.contains(other, Qt::CaseInsensitive) && !used.contains(other)) return other;
    }
    if (shared.isEmpty()) shared = family;
  }
  return shared;
}

/// The scripts that a hand lacks: a hand that has accents, then emoji, then a wide sans. A hand for
/// Japanese comes last, since its Greek and Cyrillic are set as wide as its ideographs.
QStringList chainFor(const QString& family) {
  QStringList families{family};
  for (const char* fallback : {"Caveat", "Noto Color Emoji", "DejaVu Sans", "Klee One"}) {
    if (family != QLatin1String(fallback)) families += QLatin1String(fallback);
  }
  return families;
}

/// The family that is really used, since the font may name one that is missing, or a generic one:
/// then the chain's emoji would take the digits.
QString userFamily() { return QFontInfo(QGuiApplication::font()).family(); }

/// The middle one of what `measure` gives for each of the letters.
template <typename Measure>
double median(const char* letters, const Measure& measure) {
  std::vector<double> values;
  for (const char* letter = letters; *letter; ++letter) {
    values.push_back(measure(QLatin1Char(*letter)));
  }
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// A stand-in, made to look as large as an ordinary face. What these fonts say of themselves does
/// not help, as some claim lines of three times their size: their letters are measured.
CardFont standIn(const QString& family) {
  constexpr int kDesignSize = 1000;
  constexpr double kUsualXHeight = 0.5;
  constexpr double kUsualAdvance = 0.45;
  constexpr double kSpaceAround = 0.1;  // above and below the letters
  constexpr double kTallestLine = 1.5;  // 0.06 H: the band's room above a row of tags
  QFont font(family);
  font.setPixelSize(kDesignSize);
  font.setHintingPreference(QFont::PreferNoHinting);
  const QFontMetricsF metrics(font);
  const auto ink = [&](QChar letter) { return metrics.tightBoundingRect(letter); };
  const double xHeight = median("aceimnorsuvwxz", [&](QChar c) { return -ink(c).top(); });
  const double above = median("ABDEHMhdklb", [&](QChar c) { return -ink(c).top(); });
  const double below = median("gpqy", [&](QChar c) { return ink(c).bottom(); });
  const double advance =
      median("aceimnorsuvwxz", [&](QChar c) { return metrics.horizontalAdvance(c); });
  if (xHeight <= 0 || advance <= 0) return {chainFor(family)};
  const double ascent = std::max(above / kDesignSize, 0.0) + kSpaceAround;
  const double descent = std::max(below / kDesignSize, 0.0) + kSpaceAround;
  const double looksUsual = (kUsualXHeight / xHeight + kUsualAdvance / advance) / 2 * kDesignSize;
  const double factor =
      std::min(std::clamp(looksUsual, 0.8, 1.4), kTallestLine / (ascent + descent));
  return {chainFor(family), factor, ascent, descent};
}

std::vector<CardFont> makeCaptionFonts() {
  const QStringList chosen = chooseHands(QFontDatabase::families());
  std::vector<CardFont> fonts;
  for (std::size_t i = 0; i < hands().size(); ++i) {
    const QString& family = chosen[static_cast<qsizetype>(i)];
    if (family.isEmpty()) {
      fonts.push_back({chainFor(userFamily())});
    } else if (family == hands()[i].front()) {
      fonts.push_back({chainFor(family)});  // the hand itself, as it is
    } else {
      fonts.push_back(standIn(family));
    }
  }
  return fonts;
}

}  // namespace

QStringList chooseHands(const QStringList& installedFamilies) {
  QStringList chosen;
  for (const QStringList& row : hands()) chosen += firstInstalled(row, installedFamilies);
  for (QString& family : chosen) {
    if (family.isEmpty()) family = spareHand(installedFamilies, chosen);
  }
  return chosen;
}

const std::vector<CardFont>& captionFonts() {
  static const std::vector<CardFont> fonts = makeCaptionFonts();
  return fonts;
}

CardFont tagFont() { return {chainFor(userFamily())}; }

}  // namespace pelmora::cards
