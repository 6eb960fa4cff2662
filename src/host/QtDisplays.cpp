#include "host/QtDisplays.h"

#include <qpa/qplatformscreen.h>
#include <QGuiApplication>
#include <QScreen>

namespace pelmora::host {

namespace {

/// Those that there are.
std::vector<const QScreen*> connectedScreens() {
  std::vector<const QScreen*> connected;
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (screen->handle() && !screen->handle()->isPlaceholder()) connected.push_back(screen);
  }
  return connected;
}

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
  const std::vector<const QScreen*> connected = connectedScreens();
  std::vector<Rect> geometries;
  std::vector<DisplayPlaces::Screen> names;
  for (const QScreen* screen : connected) {
    geometries.push_back(geometryOf(screen));
    names.push_back({screen, screen->name().toStdString()});
  }
  const std::vector<Rect> frames = flipped(geometries);
  const std::lock_guard lock(_mutex);
  _places.update(names);
  _screens.resize(_places.places().size());
  for (std::size_t i = 0; i < _screens.size(); ++i) {
    const DisplayPlaces::Place& place = _places.places()[i];
    if (!place.screen) continue;  // it stays in the list as it was
    _screens[i] = {place.id, place.name, frames[*place.screen],
                   connected[*place.screen]->devicePixelRatio()};
  }
}

std::vector<platform::Display> QtDisplays::screens() const {
  const std::lock_guard lock(_mutex);
  return _screens;
}

std::optional<platform::Display> QtDisplays::displayOf(const QScreen* screen) const {
  const std::lock_guard lock(_mutex);
  const std::vector<DisplayPlaces::Place>& places = _places.places();
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (places[i].screen && places[i].handle == screen) return _screens[i];
  }
  return std::nullopt;
}

}  // namespace pelmora::host
