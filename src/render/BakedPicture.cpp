#include "render/BakedPicture.h"

#include "render/DrawList.h"
#include "render/Shadow.h"
#include "render/TextSetting.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace pelmora::render {

namespace {

// A turned picture's edge is smoothed across the pixel beyond it; one more keeps the margin's own
// edge out of sight when the picture is shown smaller than it was baked.
constexpr int kMargin = 2;
// What graphics hardware and painters take, and what memory should.
constexpr double kLargestSide = 16000;
constexpr double kMostPixels = 1 << 26;

bool hasSizeNear(const QImage& image, double width, double height) {
  return std::abs(image.width() - width) <= 1 && std::abs(image.height() - height) <= 1;
}

QSize sizeInPixels(const PictureSource& source) {
  const double width = source.bounds.size.width * source.scale;
  const double height = source.bounds.size.height * source.scale;
  if (!(width > 0) || !(height > 0)) return {};
  // Artwork drawn for these pixels is taken as it is: nothing is sharper than not resampling.
  if (hasSizeNear(source.contents, width, height)) return source.contents.size();
  const double across = std::clamp(width, 1.0, kLargestSide);
  const double down = std::clamp(height, 1.0, kLargestSide);
  const double shrunk = std::min(1.0, std::sqrt(kMostPixels / (across * down)));
  return {static_cast<int>(std::lround(across * shrunk)),
          static_cast<int>(std::lround(down * shrunk))};
}

bool isOpaque(const QImage& art) {
  for (int y = 0; y < art.height(); ++y) {
    const auto* row = reinterpret_cast<const quint32*>(art.constScanLine(y));
    quint32 all = 0xFF000000U;
    for (int x = 0; x < art.width(); ++x) all &= row[x];
    if (all != 0xFF000000U) return false;
  }
  return true;
}

bool hasText(const PictureSource& source) {
  return source.text && !source.text->string.plainText().empty();
}

/// Whether there is anything to paint besides the contents.
bool hasDrawing(const PictureSource& source) {
  return !source.fills.empty() || source.backgroundColor || hasText(source);
}

void paintFills(QPainter& painter, const PictureSource& source, const QSize& size) {
  const Rect& bounds = source.bounds;
  const double across = size.width() / bounds.size.width;
  const double down = size.height() / bounds.size.height;
  QPainterPath shape;
  shape.addRoundedRect(QRectF(QPointF(), QSizeF(size)), source.cornerRadius * across,
                       source.cornerRadius * down);
  painter.setRenderHint(QPainter::Antialiasing);
  if (source.backgroundColor) painter.fillPath(shape, toQColor(*source.backgroundColor));
  for (const LayerContext::Fill& fill : source.fills) {
    QPainterPath filled;
    filled.addRect((fill.rect.minX() - bounds.minX()) * across,
                   (bounds.maxY() - fill.rect.maxY()) * down, fill.rect.size.width * across,
                   fill.rect.size.height * down);
    painter.fillPath(filled.intersected(shape), toQColor(fill.color));
  }
}

void paintText(QPainter& painter, const PictureSource& source, const QSize& size) {
  const Size& bounds = source.bounds.size;
  painter.scale(size.width() / bounds.width, size.height() / bounds.height);
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
  TextSetting(*source.text, bounds.width).draw(painter);
}

/// All but the shadow, with as much more on every side as text may reach.
QImage artOf(const PictureSource& source, const QSize& size, int overhang) {
  if (!hasDrawing(source) && source.contents.size() == size) {
    return source.contents.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  }
  QImage art(size + 2 * QSize(overhang, overhang), QImage::Format_ARGB32_Premultiplied);
  art.fill(Qt::transparent);
  QPainter painter(&art);
  painter.translate(overhang, overhang);
  paintFills(painter, source, size);
  if (!source.contents.isNull()) {
    // Scaled ahead: the painter's own scaling leaves out pixels when it makes a picture smaller.
    painter.drawImage(
        0, 0, source.contents.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
  }
  if (hasText(source)) paintText(painter, source, size);
  return art;
}

int overhangIn(const PictureSource& source, const QSize& size) {
  if (!hasText(source)) return 0;
  const double across = size.width() / source.bounds.size.width;
  return static_cast<int>(std::ceil(overhangOf(source.text->string) * across));
}

void copyOpaque(QImage& image, const QImage& art, const QPoint& place) {
  for (int y = 0; y < art.height(); ++y) {
    std::memcpy(image.scanLine(y + place.y()) + place.x() * 4, art.constScanLine(y),
                static_cast<std::size_t>(art.width()) * 4);
  }
}

}  // namespace

std::shared_ptr<const BakedPicture> bake(const PictureSource& source) {
  const QSize size = sizeInPixels(source);
  if (size.isEmpty() || (source.contents.isNull() && !hasDrawing(source))) return nullptr;

  const int overhang = overhangIn(source, size);
  const QImage art = artOf(source, size, overhang);
  const Shadow shadow{.offset = {source.shadowOffset.width * source.scale,
                                 -source.shadowOffset.height * source.scale},
                      .deviation = source.shadowRadius * source.scale,
                      .opacity = std::clamp(source.shadowOpacity, 0.0, 1.0)};
  const int reach = shadow.reach();
  const QPointF shift = shadow.isVisible() ? shadow.offset : QPointF();
  const auto marginFor = [&](double towards) {
    return overhang + std::max(kMargin, static_cast<int>(std::ceil(reach + towards)));
  };
  const QPoint place(marginFor(-shift.x()), marginFor(-shift.y()));
  const QPoint artPlace = place - QPoint(overhang, overhang);
  QImage image(size.width() + place.x() + marginFor(shift.x()),
               size.height() + place.y() + marginFor(shift.y()),
               QImage::Format_ARGB32_Premultiplied);
  if (image.isNull()) return nullptr;

  const bool opaque = isOpaque(art);
  if (!shadow.isVisible()) {
    image.fill(Qt::transparent);
  } else if (opaque) {
    drawShadowOfRectangle(image, QRectF(place, size), shadow);
  } else {
    drawShadowOfPicture(image, art, artPlace, shadow);
  }
  if (opaque) {
    copyOpaque(image, art, place);
  } else {
    QPainter(&image).drawImage(artPlace, art);
  }
  return std::make_shared<const BakedPicture>(BakedPicture{image, QRectF(place, size), opaque});
}

}  // namespace pelmora::render
