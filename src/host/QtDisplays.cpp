#include "host/QtDisplays.h"

#include <QGuiApplication>
#include <QScreen>

namespace pelmora::host {

namespace {

std::uint64_t idOf(const QScreen* screen) { return reinterpret_cast<std::uintptr_t>(screen); }

Rect geometryOf(const QScreen* screen) {
  const QRect rect = screen->geometry();
  return {{static_cast<double>(rect.x()), static_cast<double>(rect.y())},
          {static_cast<double>(rect.width()), static_cast<double>(rect.height())}};
}

}  // namespace

std::vector<Rect> flipped(const std::vector<Rect>& geometries) {
  std::vector<Rect> frames = geometries;
  if (frames.empty()) return frames;
  const Rect primary = geometries.front();
  for (Rect& frame : frames) {
    frame.origin.x -= primary.origin.x;
    frame.origin.y = primary.maxY() - frame.maxY();
  }
  return frames;
}

QtDisplays::QtDisplays() { update(); }

void QtDisplays::update() {
  const QList<QScreen*> screens = QGuiApplication::screens();
  std::vector<Rect> geometries;
  for (const QScreen* screen : screens) geometries.push_back(geometryOf(screen));
  const std::vector<Rect> frames = flipped(geometries);
  const std::lock_guard lock(_mutex);
  _screens.clear();
  for (qsizetype i = 0; i < screens.size(); ++i) {
    const QScreen* screen = screens[i];
    _screens.push_back({idOf(screen), screen->name().toStdString(),
                        frames[static_cast<std::size_t>(i)], screen->devicePixelRatio()});
  }
}

std::vector<platform::Display> QtDisplays::screens() const {
  const std::lock_guard lock(_mutex);
  return _screens;
}

std::optional<platform::Display> QtDisplays::displayOf(const QScreen* screen) const {
  const std::lock_guard lock(_mutex);
  for (const platform::Display& display : _screens) {
    if (display.id == idOf(screen)) return display;
  }
  return std::nullopt;
}

}  // namespace pelmora::host
