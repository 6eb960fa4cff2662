#include "host/SamplePictures.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QSaveFile>

#include <sys/stat.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <numbers>
#include <random>
#include <string_view>
#include <system_error>

namespace pelmora::host {

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

/// Numbers between two bounds, the same in every run: the generator's sequence is fixed by the
/// standard, and what becomes of it is plain arithmetic.
class Dice {
 public:
  explicit Dice(unsigned seed) : _generator(seed) {}
  double between(double lo, double hi) {
    return lo + (hi - lo) * static_cast<double>(_generator()) / 4294967295.0;
  }

 private:
  std::mt19937 _generator;
};

QColor mix(const QColor& a, const QColor& b, double share) {
  const auto part = [share](int from, int to) {
    return static_cast<int>(std::lround(from + (to - from) * share));
  };
  return QColor(part(a.red(), b.red()), part(a.green(), b.green()), part(a.blue(), b.blue()));
}

void paintSky(QPainter& painter, const QSizeF& size, const QGradientStops& stops) {
  QLinearGradient sky(0, 0, 0, size.height());
  sky.setStops(stops);
  painter.fillRect(QRectF(QPointF(), size), sky);
}

/// A disc that shines into what is around it.
void paintGlow(QPainter& painter, const QPointF& center, double radius, const QColor& color) {
  QRadialGradient glow(center, radius * 4);
  QColor edge = color;
  edge.setAlpha(0);
  QColor near = color;
  near.setAlpha(130);
  glow.setStops({{0, near}, {1, edge}});
  painter.setPen(Qt::NoPen);
  painter.setBrush(glow);
  painter.drawEllipse(center, radius * 4, radius * 4);
  painter.setBrush(color);
  painter.drawEllipse(center, radius, radius);
}

/// A ridge across the picture, filled down to its bottom: a few waves of ever shorter length.
QPainterPath ridge(const QSizeF& size, double top, double height, int waves, Dice& dice) {
  std::array<double, 5> phases{};
  for (double& phase : phases) phase = dice.between(0, kTurn);
  QPainterPath path(QPointF(0, size.height()));
  for (double x = 0; x <= size.width() + 4; x += 4) {
    double y = 0;
    double weight = 1;
    double length = size.width() / waves;
    for (const double phase : phases) {
      y += weight * std::sin(kTurn * x / length + phase);
      weight *= 0.45;
      length *= 0.47;
    }
    path.lineTo(x, top + height * y / 2);
  }
  path.lineTo(size.width() + 4, size.height());
  path.closeSubpath();
  return path;
}

/// Ridges behind one another, the far ones in the colour of the air.
void paintRidges(QPainter& painter, const QSizeF& size, int count, double firstTop,
                 const QColor& far, const QColor& near, Dice& dice) {
  painter.setPen(Qt::NoPen);
  for (int i = 0; i < count; ++i) {
    const double depth = double(i) / (count - 1);
    const double top = size.height() * (firstTop + (0.93 - firstTop) * depth);
    painter.setBrush(mix(far, near, depth));
    painter.drawPath(ridge(size, top, size.height() * (0.05 + 0.04 * depth), 2 + i % 3, dice));
  }
}

void paintStars(QPainter& painter, const QSizeF& size, int count, Dice& dice) {
  painter.setPen(Qt::NoPen);
  for (int i = 0; i < count; ++i) {
    const QPointF place{dice.between(0, size.width()), dice.between(0, size.height() * 0.8)};
    const double brightness = dice.between(0, 1);
    const double radius = 0.6 + 1.8 * std::pow(brightness, 6);
    painter.setBrush(QColor(255, 250, 235, static_cast<int>(70 + 185 * brightness)));
    painter.drawEllipse(place, radius, radius);
  }
}

void paintDawn(QPainter& painter, const QSizeF& size) {
  Dice dice(11);
  paintSky(painter, size, {{0, "#35507f"}, {0.35, "#c97f8e"}, {0.6, "#f6c28b"}, {1, "#fde9c2"}});
  paintGlow(painter, {size.width() * 0.68, size.height() * 0.5}, size.height() * 0.055, "#fff3d0");
  paintRidges(painter, size, 6, 0.52, "#d9a08c", "#2b2f4b", dice);
}

void paintNight(QPainter& painter, const QSizeF& size) {
  Dice dice(23);
  paintSky(painter, size, {{0, "#060a1f"}, {0.6, "#13244d"}, {1, "#3c4f7c"}});
  paintStars(painter, size, 900, dice);
  paintGlow(painter, {size.width() * 0.3, size.height() * 0.22}, size.width() * 0.05, "#f4f0dc");
  paintRidges(painter, size, 4, 0.7, "#24345f", "#060914", dice);
}

void paintSea(QPainter& painter, const QSizeF& size) {
  Dice dice(5);
  paintSky(painter, size, {{0, "#5fb3d4"}, {0.4, "#d8eff2"}, {0.5, "#fbf3dc"}, {1, "#fbf3dc"}});
  paintGlow(painter, {size.width() * 0.25, size.height() * 0.22}, size.height() * 0.07, "#fffbe6");
  paintRidges(painter, size, 9, 0.48, "#8ccbd0", "#0b3f5c", dice);
}

void paintDunes(QPainter& painter, const QSizeF& size) {
  Dice dice(41);
  paintSky(painter, size, {{0, "#3f8fc4"}, {0.5, "#bfe0ea"}, {1, "#fdf2dc"}});
  painter.setPen(Qt::NoPen);
  for (int i = 0; i < 5; ++i) {
    const double depth = i / 4.0;
    QLinearGradient sand(0, size.height() * 0.4, size.width() * 0.5, size.height());
    sand.setColorAt(0, mix("#f6d9a4", "#e59a4c", depth));
    sand.setColorAt(1, mix("#d9a566", "#8f4a22", depth));
    painter.setBrush(sand);
    const double top = size.height() * (0.5 + 0.1 * i);
    painter.drawPath(ridge(size, top, size.height() * 0.12, 1, dice));
  }
}

void paintForest(QPainter& painter, const QSizeF& size) {
  Dice dice(77);
  paintSky(painter, size, {{0, "#e8f0e4"}, {0.7, "#cfe0d0"}, {1, "#a9c7b0"}});
  painter.setPen(Qt::NoPen);
  for (int row = 0; row < 6; ++row) {
    const double depth = row / 5.0;
    painter.setBrush(mix("#b4cdb9", "#12352c", depth));
    const double height = size.height() * (0.22 + 0.16 * depth);
    const double foot = size.height() * (0.5 + 0.13 * row);
    for (double x = -20; x < size.width() + 40; x += 26 + 26 * depth) {
      const double tall = height * dice.between(0.7, 1.15);
      const double middle = x + dice.between(-12, 12);
      const double half = tall * 0.2;
      painter.drawPolygon(QPolygonF{{QPointF(middle, foot - tall), QPointF(middle + half, foot),
                                     QPointF(middle - half, foot)}});
    }
    painter.drawRect(QRectF(0, foot - 2, size.width(), size.height()));
  }
}

void paintQuilt(QPainter& painter, const QSizeF& size) {
  Dice dice(3);
  const std::array<QColor, 6> colors{"#264653", "#2a9d8f", "#e9c46a",
                                     "#f4a261", "#e76f51", "#f1e3d3"};
  const auto color = [&] { return colors[static_cast<std::size_t>(dice.between(0, 5.999))]; };
  const double cell = size.width() / 8;
  painter.setPen(Qt::NoPen);
  for (double y = 0; y < size.height(); y += cell) {
    for (double x = 0; x < size.width(); x += cell) {
      painter.fillRect(QRectF(x, y, cell + 1, cell + 1), color());
      painter.setBrush(color());
      const int kind = static_cast<int>(dice.between(0, 3.999));
      const QRectF whole(x, y, cell, cell);
      if (kind == 0) painter.drawEllipse(whole.adjusted(cell / 6, cell / 6, -cell / 6, -cell / 6));
      if (kind == 1) painter.drawPie(QRectF(x - cell, y, 2 * cell, 2 * cell), 0, 90 * 16);
      if (kind == 2) painter.drawPie(QRectF(x, y - cell, 2 * cell, 2 * cell), 180 * 16, 90 * 16);
      if (kind == 3) {
        painter.drawPolygon(QPolygonF{{whole.topLeft(), whole.topRight(), whole.bottomLeft()}});
      }
    }
  }
}

void paintBubbles(QPainter& painter, const QSizeF& size) {
  Dice dice(19);
  paintSky(painter, size, {{0, "#20123f"}, {0.5, "#7b2f6b"}, {1, "#f08a5d"}});
  painter.setCompositionMode(QPainter::CompositionMode_Screen);
  painter.setPen(Qt::NoPen);
  for (int i = 0; i < 60; ++i) {
    const QPointF center{dice.between(0, size.width()), dice.between(0, size.height())};
    const double radius = size.width() * (0.02 + 0.1 * std::pow(dice.between(0, 1), 2));
    QColor color = QColor::fromHsv(static_cast<int>(dice.between(0, 60) + 320) % 360, 130, 230);
    QRadialGradient disc(center, radius);
    color.setAlpha(30);
    disc.setColorAt(0, color);
    color.setAlpha(120);
    disc.setColorAt(0.93, color);
    color.setAlpha(0);
    disc.setColorAt(1, color);
    painter.setBrush(disc);
    painter.drawEllipse(center, radius, radius);
  }
}

void paintSpiral(QPainter& painter, const QSizeF& size) {
  painter.fillRect(QRectF(QPointF(), size), QColor("#faf3e3"));
  painter.translate(size.width() / 2, size.height() * 0.52);
  painter.setPen(Qt::NoPen);
  constexpr int kSeeds = 1400;
  const double golden = kTurn * (1 - 1 / std::numbers::phi);
  for (int i = kSeeds; i > 0; --i) {
    const double share = double(i) / kSeeds;
    const double distance = size.width() * 0.46 * std::sqrt(share);
    const QPointF place(distance * std::cos(i * golden), distance * std::sin(i * golden));
    painter.setBrush(share < 0.35 ? mix("#4a2511", "#b5651d", share / 0.35)
                                  : mix("#e8a317", "#ffd95a", (share - 0.35) / 0.65));
    const double radius = size.width() * (0.006 + 0.011 * share);
    painter.drawEllipse(place, radius, radius);
  }
}

struct Sample {
  const char* name;
  const char* format;
  QSize size;
  void (*paint)(QPainter&, const QSizeF&);
};

constexpr int kJpegQuality = 90;
constexpr int kUsualCompression = -1;  // of PNG, to which a quality means another thing

const std::array<Sample, 8>& samples() {
  static const std::array<Sample, 8> all{{
      {"First light.jpg", "JPEG", {1600, 1067}, paintDawn},
      {"Clear night.jpg", "JPEG", {1067, 1600}, paintNight},
      {"Morning sea.jpg", "JPEG", {1600, 900}, paintSea},
      {"Dunes.jpg", "JPEG", {1600, 1200}, paintDunes},
      {"Misty forest.jpg", "JPEG", {1200, 1600}, paintForest},
      {"Quilt.png", "PNG", {1600, 1200}, paintQuilt},
      {"Bubbles.jpg", "JPEG", {1600, 1000}, paintBubbles},
      {"Sunflower.png", "PNG", {1400, 1400}, paintSpiral},
  }};
  return all;
}

Status save(const Sample& sample, const FilePath& file) {
  QImage picture(sample.size, QImage::Format_RGB32);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  sample.paint(painter, sample.size);
  painter.end();
  const int quality = sample.format == std::string_view("JPEG") ? kJpegQuality : kUsualCompression;
  // Through a temporary file, so that nobody meets half a picture.
  QSaveFile out(QFile::decodeName(QByteArray::fromStdString(file.bytes())));
  if (!out.open(QIODevice::WriteOnly) || !picture.save(&out, sample.format, quality) ||
      !out.commit()) {
    return Error{"cannot write " + file.bytes() + ": " + out.errorString().toStdString()};
  }
  return Done{};
}

}  // namespace

Status paintSamplePictures(const FilePath& folder) {
  std::error_code failure;
  std::filesystem::create_directories(folder.bytes(), failure);
  if (failure) return Error{"cannot make " + folder.bytes() + ": " + failure.message()};
  for (const Sample& sample : samples()) {
    const FilePath file = folder / sample.name;
    struct stat facts {};
    if (lstat(file.c_str(), &facts) == 0) continue;
    if (const Status saved = save(sample, file); !saved) return saved;
  }
  return Done{};
}

}  // namespace pelmora::host
