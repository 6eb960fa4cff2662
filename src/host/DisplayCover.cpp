#include "host/DisplayCover.h"

#include "wayland/QtHandles.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWindow>

#include <chrono>
#include <utility>

namespace pelmora::host {

namespace {

/// A display that goes takes its window along, and is itself reported gone only then.
constexpr std::chrono::milliseconds kUntilDisplaysAreKnown{500};

}  // namespace

DisplayCover::DisplayCover(ViewWindows& windows, QtDisplays& displays, Layers layers)
    : _windows(windows), _displays(displays) {
  wl_display* display = wayland::displayOfApplication();
  if (display && layers == Layers::wherePossible) _layers = wayland::LayerShell::find(display);
  connect(qGuiApp, &QGuiApplication::screenAdded, this,
          [this](QScreen* screen) { cover(*screen, _layers.get()); });
  connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this](QScreen* screen) {
    uncover(*screen);
    _displays.update();
  });
  for (QScreen* screen : QGuiApplication::screens()) cover(*screen, _layers.get());
  if (!_covered.empty()) _covered.begin()->second.window.requestActivate();
}

DisplayCover::~DisplayCover() = default;

void DisplayCover::cover(QScreen& screen, const wayland::LayerShell* layers) {
  connect(&screen, &QScreen::geometryChanged, this, [this] { _displays.update(); });
  _displays.update();
  const auto display = _displays.displayOf(&screen);
  if (!display || _covered.contains(&screen)) return;
  QWindow& window =
      _windows.add({.frame = display->frame, .scale = display->scale, .display = display});
  _covered.emplace(&screen, Covered{window, std::make_unique<CoverWindow>(
                                                window, screen, layers,
                                                [this, &screen] { coverAgain(screen); })});
}

void DisplayCover::uncover(QScreen& screen) {
  auto node = _covered.extract(&screen);
  if (node.empty()) return;
  node.mapped().cover.reset();
  _windows.remove(node.mapped().window);
  // The keyboard was perhaps that window's.
  if (!_covered.empty()) _covered.begin()->second.window.requestActivate();
}

/// The window was taken away: mostly with its display, but if that stays an ordinary window will
/// do.
void DisplayCover::coverAgain(QScreen& screen) {
  uncover(screen);
  QTimer::singleShot(kUntilDisplaysAreKnown, this, [this, key = &screen] {
    if (QGuiApplication::screens().contains(key)) cover(*key, nullptr);
  });
}

}  // namespace pelmora::host
