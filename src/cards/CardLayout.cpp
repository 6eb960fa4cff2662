#include "cards/CardLayout.h"

#include <algorithm>

namespace pelmora::cards {

namespace {

constexpr double kBorder = 0.03;
constexpr double kBottomBand = 0.11;
constexpr double kCaptionFontSize = 0.04;
constexpr double kCaptionMargin = 0.003;
constexpr double kCaptionLift = 0.02;
constexpr double kTagFontSize = 0.02;

constexpr double kSmallestFontSize = 8;
constexpr double kPillPadding = 4;  // left and right of the text
constexpr double kLightPill = 0.73;

struct MeasuredTag {
  std::size_t index;
  double width;  // with the padding
};

struct TagRow {
  std::vector<MeasuredTag> tags;
  double width = -2 * kPillPadding;  // of the texts, without the outer paddings
  double height = 0;
};

TagRow measureTags(double available, std::size_t tagCount, const MeasureTag& measure) {
  TagRow row;
  for (std::size_t index = 0; index < tagCount; ++index) {
    const Size size = measure(index);
    row.height = std::max(row.height, size.height);
    const double width = size.width + 2 * kPillPadding;
    if (available < row.width + width) break;
    row.width += width;
    row.tags.push_back({index, width});
  }
  return row;
}

}  // namespace

CardLayout layoutCard(const Size& picture, double viewHeight) {
  const double border = kBorder * viewHeight;
  const double band = kBottomBand * viewHeight;
  const double margin = kCaptionMargin * viewHeight;
  const Size size{picture.width + 2 * border, picture.height + border + band};
  return {.border = border,
          .bottomBand = band,
          .size = size,
          .picture = {{border, band}, picture},
          .captionBox = {size.width - 2 * margin, band - margin},
          .captionFontSize = kCaptionFontSize * viewHeight,
          .captionLift = kCaptionLift * viewHeight,
          .tagFontSize = kTagFontSize * viewHeight};
}

CaptionLayout layoutCaption(const CardLayout& card, bool hasTags,
                            const MeasureAtFontSize& measure) {
  const Size box = card.captionBox;
  double fontSize = card.captionFontSize;
  Size text = measure(fontSize);
  // Written so that a size that is no number ends the loop as well.
  while (!(box.width / 2 - text.width / 2 > 0) && fontSize > kSmallestFontSize) {
    fontSize -= 1;
    text = measure(fontSize);
  }
  const double x = std::max(box.width / 2 - text.width / 2, 0.0);
  const double y = box.height / 2 - text.height / 2.5 + (hasTags ? card.captionLift : 0);
  return {fontSize, {{x, y}, text}};
}

std::vector<TagLayout> layoutTags(const CardLayout& card, const CaptionLayout& caption,
                                  std::size_t tagCount, const MeasureTag& measure) {
  const TagRow row = measureTags(card.captionBox.width, tagCount, measure);
  double x = card.captionBox.width / 2 - row.width / 2;
  const double y = caption.rect.origin.y - row.height;
  std::vector<TagLayout> places;
  for (const MeasuredTag& tag : row.tags) {
    const double width = static_cast<float>(tag.width);
    const Rect inner{{x, y}, {width - 2 * kPillPadding, row.height}};
    places.push_back({.index = tag.index,
                      .text = {{x, y}, {width, row.height}},
                      .pill = insetRect(inner, -kPillPadding, 0)});
    x += width;
  }
  return places;
}

bool wantsWhiteText(const Color& pill) {
  return 0.299 * pill.red + 0.587 * pill.green + 0.144 * pill.blue < kLightPill;
}

}  // namespace pelmora::cards
