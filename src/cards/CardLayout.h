#pragma once

#include "shared/Geometry.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace pelmora::cards {

// Where everything on a framed card goes: numbers alone, so that no drawing is needed to check
// them. Units: points in the card, origin lower left. H is the height of the view that the card is
// for. Thread: any.

/// The frame around a picture.
struct CardLayout {
  double border = 0;      // left, right and top, 0.03 H
  double bottomBand = 0;  // below the picture, 0.11 H
  Size size;              // of the whole card
  Rect picture;
  Size captionBox;
  double captionFontSize = 0;  // to start with, 0.04 H
  double captionLift = 0;      // above a row of tags, 0.02 H
  double tagFontSize = 0;      // 0.02 H
};

[[nodiscard]] CardLayout layoutCard(const Size& picture, double viewHeight);

/// Gives the size of a text, on one line, in a font of a size.
using MeasureAtFontSize = std::function<Size(double fontSize)>;

struct CaptionLayout {
  double fontSize = 0;
  Rect rect;
};

/// The largest caption that fits, in steps of one point; from 8 points down it is left to run past
/// the right edge. The box is centred on the card's left edge plus half its width, so a little left
/// of the middle, and a little above the band's middle: both are how the card has always looked.
[[nodiscard]] CaptionLayout layoutCaption(const CardLayout& card, bool hasTags,
                                          const MeasureAtFontSize& measure);

struct TagLayout {
  std::size_t index = 0;  // among the file's tags
  Rect text;
  Rect pill;
};

/// Gives the size of a tag's text.
using MeasureTag = std::function<Size(std::size_t index)>;

/// The tags that fit, side by side under the caption. The first that does not fit ends the row, yet
/// counts for its height. No tag behind it is measured.
[[nodiscard]] std::vector<TagLayout> layoutTags(const CardLayout& card,
                                                const CaptionLayout& caption, std::size_t tagCount,
                                                const MeasureTag& measure);

/// Whether text on a pill of this colour is white: below a lightness of 0.73, in which blue weighs
/// 0.144.
[[nodiscard]] bool wantsWhiteText(const Color& pill);

}  // namespace pelmora::cards
