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
  _later.setSingleShot(true);
  connect(&_later, &QTimer::timeout, this, [this] { coverAll(); });
  connect(qGuiApp, &QGuiApplication::screenAdded, this, [this] { coverLater(); });
  connect(qGuiApp, &QGuiApplication::screenRemoved, this, [this](QScreen* screen) {
    uncover(*screen);
    coverLater();
  });
  coverAll();
  if (!_covered.empty()) _covered.begin()->second.window.requestActivate();
}

DisplayCover::~DisplayCover() = default;

/// A display that replaces another may be announced first: the other's place is free a moment
/// later.
void DisplayCover::coverLater() {
  if (!_later.isActive()) _later.start(0);
}

void DisplayCover::coverAll() {
  _displays.update();
  if (std::exchange(_hasOneGone, false)) showOthersAgain();
  for (QScreen* screen : QGuiApplication::screens()) {
    if (!_covered.contains(screen)) cover(*screen);
  }
}

void DisplayCover::cover(QScreen& screen) {
  const auto display = _displays.displayOf(&screen);
  if (!display) return;
  QWindow& window =
      _windows.add({.frame = display->frame, .scale = display->scale, .display = display});
  _covered.emplace(&screen, Covered{window, std::make_unique<CoverWindow>(
                                                window, screen, _layers.get(),
                                                [this, &screen] { windowClosed(screen); })});
  connect(&screen, &QScreen::geometryChanged, _covered.at(&screen).cover.get(),
          [this] { _displays.update(); });
}

void DisplayCover::uncover(QScreen& screen) {
  auto node = _covered.extract(&screen);
  if (node.empty()) return;
  _windows.finishFrame(node.mapped().window);
  node.mapped().cover.reset();
  _windows.remove(node.mapped().window);
  _hasOneGone = true;
  // The keyboard was perhaps that window's.
  if (!_covered.empty()) _covered.begin()->second.window.requestActivate();
}

/// A compositor moves the window of a display that goes to another display, and may go on showing
/// there the workspace where it was, and not the one of the window that covers it. No window raises
/// itself on Wayland, but one that is shown anew is seen. Layers are over all workspaces.
void DisplayCover::showOthersAgain() {
  if (!wayland::displayOfApplication()) return;
  for (const auto& [screen, covered] : _covered) {
    if (covered.cover->isLayer()) continue;
    _windows.finishFrame(covered.window);
    covered.cover->showAgain();
  }
}

/// Mostly its display has gone, and is reported so a moment later. Where it has not, the compositor
/// does not want layers any more.
void DisplayCover::windowClosed(QScreen& screen) {
  uncover(screen);
  QTimer::singleShot(kUntilDisplaysAreKnown, this, [this, key = &screen] {
    if (QGuiApplication::screens().contains(key)) _layers.reset();
    coverLater();
  });
}

}  // namespace pelmora::host
