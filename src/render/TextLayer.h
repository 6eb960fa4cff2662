#pragma once

#include "render/AttributedString.h"
#include "render/Layer.h"

namespace pelmora::render {

/// A layer that shows text: from the top of its bounds downward, wrapped at their width, painted at
/// the pixels of the display. Thread, ownership and units as for `Layer`.
class TextLayer : public Layer {
 public:
  /// In the role of "text".
  TextLayer();

  [[nodiscard]] const AttributedString& string() const;
  void setString(AttributedString string);
  [[nodiscard]] TextAlignment alignment() const;
  void setAlignment(TextAlignment alignment);
  /// Of what has no colour of its own in the string; white at first.
  [[nodiscard]] Color foregroundColor() const;
  void setForegroundColor(const Color& color);
};

/// The bounds that a text wants where it may have at most `most`: as wide as its widest line, which
/// wraps at `most.width`, as high as its lines together, in whole points and never more than 16,384
/// of them. Zero for no text. Thread: any, but one where fonts can be used.
[[nodiscard]] Size boundingSize(const AttributedString& string, const Size& most);

}  // namespace pelmora::render
