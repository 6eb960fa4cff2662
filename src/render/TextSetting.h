#pragma once

#include "render/AttributedString.h"

#include <memory>
#include <vector>

class QPainter;
class QTextLayout;

namespace pelmora::render {

/// Text set in lines, each with a direction of its own, from the top downward. Its shape does not
/// depend on the scale at which it is drawn. However long the text, the work is bounded: a line
/// ends after 512 units of UTF-16, and the text after 64 lines or 16,384 points.
/// Thread: the one that made it, any on which fonts can be used. Units: points.
class TextSetting {
 public:
  /// Lines that are wider than `width` wrap.
  TextSetting(const TextBlock& block, double width);
  ~TextSetting();
  TextSetting(const TextSetting&) = delete;
  TextSetting& operator=(const TextSetting&) = delete;

  /// The width of the widest line and the height of all, in whole points; zero without any text.
  [[nodiscard]] Size size() const;
  /// Draws with the upper left corner at the origin, in a painter whose y axis points down.
  void draw(QPainter& painter) const;

 private:
  Color _foregroundColor;
  std::vector<std::unique_ptr<QTextLayout>> _paragraphs;
  double _width = 0;
  double _height = 0;
};

/// How far letters may reach beyond the lines that they stand in.
[[nodiscard]] double overhangOf(const AttributedString& string);

}  // namespace pelmora::render
