#pragma once

#include "shared/Geometry.h"

#include <QString>

#include <memory>
#include <string_view>

class QColor;
class QPainter;
class QPointF;
class QTextLayout;

namespace pelmora::cards {

struct CardFont;

/// One line of text, laid out once and then measured and drawn at any size: its shape does not
/// depend on the size or on the display, so a card looks the same at every scale.
/// Thread: the one that made it. Units: points; font sizes as well.
class TextLine {
 public:
  TextLine(const QString& text, const CardFont& font);
  ~TextLine();
  TextLine(TextLine&&) noexcept;

  /// The advance of the text and the height of its line.
  [[nodiscard]] Size sizeAt(double fontSize) const;
  /// Draws with the upper left corner at `topLeft`, in a painter whose y axis points down.
  void draw(QPainter& painter, const QPointF& topLeft, double fontSize, const QColor& color) const;

 private:
  std::unique_ptr<QTextLayout> _layout;
  double _sizeFactor;
  double _ascent;  // in design pixels, as the descent
  double _descent;
};

/// Any bytes, such as a file's name, as text for one line: what is not UTF-8 becomes replacement
/// characters, and what would break or hide the line becomes spaces.
[[nodiscard]] QString singleLine(std::string_view bytes);

}  // namespace pelmora::cards
