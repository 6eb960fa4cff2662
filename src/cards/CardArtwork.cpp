#include "cards/CardArtwork.h"

#include "cards/CaptionFonts.h"
#include "cards/CardLayout.h"
#include "cards/TextLine.h"

#include <QPainter>

#include <algorithm>
#include <bit>
#include <cmath>

namespace pelmora::cards {

namespace {

constexpr Color kPaper{1.0, 1.0, 0.93, 1.0};
constexpr Color kBlack{0, 0, 0, 1};
constexpr Color kWhite{1, 1, 1, 1};
constexpr double kMostPixels = 16384;  // of a side, whatever is asked: a card is no mural

// The platform's pixels are blue, green, red, alpha; Qt's are numbers that hold them so.
static_assert(std::endian::native == std::endian::little);

QColor qColor(const Color& color) {
  const auto part = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
  return QColor::fromRgbF(part(color.red), part(color.green), part(color.blue), part(color.alpha));
}

int pixelsOf(double points, double scale) {
  return static_cast<int>(std::lround(std::clamp(points * scale, 1.0, kMostPixels)));
}

/// From points, y upward, to the rectangle in points, y downward, that the painter takes.
QRectF flipped(const Rect& rect, double cardHeight) {
  return {rect.minX(), cardHeight - rect.maxY(), rect.size.width, rect.size.height};
}

/// The nearest whole pixels, so that the picture's edges are sharp and lie on its tint's edges.
QRect wholePixels(const QRectF& points, double scaleX, double scaleY) {
  const auto edge = [](double at) { return static_cast<int>(std::lround(at)); };
  return {QPoint(edge(points.left() * scaleX), edge(points.top() * scaleY)),
          QPoint(edge(points.right() * scaleX) - 1, edge(points.bottom() * scaleY) - 1)};
}

void paintPicture(QPainter& painter, const QImage& picture, const QRect& place) {
  if (place.isEmpty()) return;
  if (!picture.isNull()) {
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(place.topLeft(), picture.size() == place.size()
                                           ? picture
                                           : picture.scaled(place.size(), Qt::IgnoreAspectRatio,
                                                            Qt::SmoothTransformation));
  }
  // Tints the picture, and shows the paper where the picture is transparent.
  painter.setCompositionMode(QPainter::CompositionMode_Multiply);
  painter.fillRect(place, qColor(kPaper));
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void paintTag(QPainter& painter, const TextLine& text, const TagLayout& place,
              const CardLayout& card, const std::optional<Color>& color) {
  if (color) {
    const double radius = place.pill.size.height / 2;
    painter.setPen(Qt::NoPen);
    painter.setBrush(qColor(*color));
    painter.drawRoundedRect(flipped(place.pill, card.size.height), radius, radius);
  }
  const Color& ink = color && wantsWhiteText(*color) ? kWhite : kBlack;
  text.draw(painter, flipped(place.text, card.size.height).topLeft(), card.tagFontSize,
            qColor(ink));
}

void paintTags(QPainter& painter, const FramedCard& framed, const CardLayout& card,
               const CaptionLayout& caption) {
  const CardFont font = tagFont();
  std::vector<TextLine> texts;
  const auto measure = [&](std::size_t index) {
    return texts.emplace_back(singleLine(framed.tags[index]), font).sizeAt(card.tagFontSize);
  };
  for (const TagLayout& place : layoutTags(card, caption, framed.tags.size(), measure)) {
    paintTag(painter, texts[place.index], place, card, framed.colorOfTag(framed.tags[place.index]));
  }
}

void paintWriting(QPainter& painter, const FramedCard& framed, const CardLayout& card) {
  const TextLine text(singleLine(framed.caption), framed.captionFont);
  const CaptionLayout caption = layoutCaption(
      card, !framed.tags.empty(), [&text](double fontSize) { return text.sizeAt(fontSize); });
  text.draw(painter, flipped(caption.rect, card.size.height).topLeft(), caption.fontSize,
            qColor(framed.captionColor));
  if (!framed.tags.empty()) paintTags(painter, framed, card, caption);
}

}  // namespace

QImage pictureImage(const platform::Image& picture) {
  if (!picture.isValid()) return {};
  const auto [width, height] = picture.pixels->size;
  const std::size_t stride = 4 * static_cast<std::size_t>(width);
  if (picture.pixels->bytes.size() < stride * static_cast<std::size_t>(height)) return {};
  using Owner = std::shared_ptr<const platform::Pixels>;
  return QImage(
      picture.pixels->bytes.data(), width, height, static_cast<qsizetype>(stride),
      picture.pixels->opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied,
      [](void* owner) { delete static_cast<Owner*>(owner); }, new Owner(picture.pixels));
}

Size framedSize(const Size& picture, double viewHeight) {
  return layoutCard(picture, viewHeight).size;
}

QImage paintFramedCard(const FramedCard& framed, double viewHeight, double scale) {
  const CardLayout card = layoutCard(framed.picture.size, viewHeight);
  QImage artwork(pixelsOf(card.size.width, scale), pixelsOf(card.size.height, scale),
                 QImage::Format_ARGB32_Premultiplied);
  if (artwork.isNull()) return artwork;
  artwork.fill(qColor(kPaper));
  // The artwork is stretched over the card, whose size in pixels is seldom whole.
  const double scaleX = artwork.width() / std::max(card.size.width, 1e-6);
  const double scaleY = artwork.height() / std::max(card.size.height, 1e-6);
  QPainter painter(&artwork);
  paintPicture(painter, pictureImage(framed.picture),
               wholePixels(flipped(card.picture, card.size.height), scaleX, scaleY));
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  painter.scale(scaleX, scaleY);
  paintWriting(painter, framed, card);
  return artwork;
}

}  // namespace pelmora::cards
