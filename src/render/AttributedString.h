#pragma once

#include "shared/Geometry.h"

#include <optional>
#include <string>
#include <vector>

namespace pelmora::render {

/// A typeface for text.
struct TextFont {
  std::string family = {};  // the system's where empty
  double size = 12;         // points, taken to the nearest whole one
  bool bold = false;
  bool operator==(const TextFont&) const = default;
};

/// A part of a text that looks the same throughout.
struct TextRun {
  std::string text;  // UTF-8; what is not shows as replacement characters
  TextFont font;
  std::optional<Color> color = std::nullopt;  // where none, that of the layer
  bool operator==(const TextRun&) const = default;
};

/// Text with its looks. A line feed begins a line; other control characters are shown as nothing.
struct AttributedString {
  std::vector<TextRun> runs;

  /// The text without its looks.
  [[nodiscard]] std::string plainText() const {
    std::string all;
    for (const TextRun& run : runs) all += run.text;
    return all;
  }
  bool operator==(const AttributedString&) const = default;
};

/// Which side of its bounds a line of text lies at; `natural` is the side at which it begins, the
/// right for scripts that run to the left.
enum class TextAlignment { natural, left, center, right };

/// Text as a layer shows it.
struct TextBlock {
  AttributedString string;
  TextAlignment alignment = TextAlignment::natural;
  Color foregroundColor{1, 1, 1, 1};  // of runs without a colour
  bool operator==(const TextBlock&) const = default;
};

}  // namespace pelmora::render
