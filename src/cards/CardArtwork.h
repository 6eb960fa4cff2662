#pragma once

#include "platform/Image.h"

#include <QImage>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::cards {

struct CardFont;

/// What a framed card shows.
struct FramedCard {
  platform::Image picture;
  std::string caption;  // any bytes
  const CardFont& captionFont;
  Color captionColor;
  std::vector<std::string> tags;
  std::function<std::optional<Color>(std::string_view tag)> colorOfTag;
};

/// The picture's own pixels, not copied; null for a picture without any. Thread: any.
[[nodiscard]] QImage pictureImage(const platform::Image& picture);

/// The size of the framed card in points.
[[nodiscard]] Size framedSize(const Size& picture, double viewHeight);

/// Paints the picture in its frame, with its caption and its tags, for a view of `viewHeight`
/// points and `scale` device pixels in a point. What is transparent in the picture shows the paper.
/// Thread: any, but one where fonts can be used.
[[nodiscard]] QImage paintFramedCard(const FramedCard& card, double viewHeight, double scale);

}  // namespace pelmora::cards
