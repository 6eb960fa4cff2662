#include "host/ViewWindows.h"

#include "wayland/FrameCallbacks.h"

#include <qpa/qplatformwindow.h>
#include <QEvent>
#include <QWindow>

#include <chrono>
#include <utility>
#include <vector>

namespace pelmora::host {

namespace {

/// With the compositor, which calls back for no window whose display has gone.
constexpr std::chrono::milliseconds kPatience{100};

/// Whether the window was exposed when it was told so, and has been hidden, or hidden and shown
/// anew, since: a compositor ends a program that draws in it before it is told so once more.
bool isOutdated(const QWindow& window) {
  return window.isExposed() && (!window.handle() || !window.handle()->isExposed());
}

}  // namespace

ViewWindows::ViewWindows(Renderer renderer, platform::Clock& clock, platform::Displays& displays,
                         ServiceChoices choices, QObject& input)
    : _renderer(renderer), _clock(clock), _input(input), _module(clock, displays, choices) {}

ViewWindows::~ViewWindows() { hide(); }

QWindow& ViewWindows::add(ViewPlace place) {
  auto presenter = makePresenterWindow(_renderer, _clock);
  place.presenter = presenter.get();
  QWindow& window = presenter->window();
  window.setTitle("Pelmora");
  window.installEventFilter(this);
  window.installEventFilter(&_input);
  const std::size_t view = _module.addView(place);
  _shown.emplace(&window, Shown{std::move(presenter), view, place.frame.size, place.scale});
  return window;
}

void ViewWindows::finishFrame(QWindow& window) {
  const auto found = _shown.find(&window);
  if (found == _shown.end()) return;
  found->second.presenter->finishFrame();
  wayland::awaitFrameCallbacks({&window}, kPatience);
}

void ViewWindows::finishFrames() {
  std::vector<QWindow*> windows;
  for (const auto& [key, shown] : _shown) {
    shown.presenter->finishFrame();
    windows.push_back(&shown.presenter->window());
  }
  wayland::awaitFrameCallbacks(windows, kPatience);
}

void ViewWindows::remove(QWindow& window) {
  finishFrame(window);
  auto node = _shown.extract(&window);
  if (node.empty()) return;
  const std::size_t view = node.mapped().view;
  window.hide();
  window.destroy();
  QObject* const key = node.key();
  _leaving.insert(std::move(node));
  _module.removeView(view, [this, key] {
    QMetaObject::invokeMethod(
        this, [this, key] { _leaving.erase(key); }, Qt::QueuedConnection);
  });
}

void ViewWindows::hide() {
  finishFrames();
  for (const auto& [key, shown] : _shown) shown.presenter->window().hide();
}

/// Whatever brought another size or scale, a window is sized or exposed anew then.
bool ViewWindows::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Expose:
      if (isOutdated(*static_cast<QWindow*>(watched))) return true;
      [[fallthrough]];
    case QEvent::Resize:
    case QEvent::ScreenChangeInternal:
      follow(*static_cast<QWindow*>(watched));
      break;
    case QEvent::Close:  // which destroys it
      finishFrame(*static_cast<QWindow*>(watched));
      break;
    default:
      break;
  }
  return false;
}

void ViewWindows::follow(QWindow& window) {
  const auto found = _shown.find(&window);
  if (found == _shown.end()) return;
  Shown& shown = found->second;
  const Size size{static_cast<double>(window.width()), static_cast<double>(window.height())};
  const double scale = window.devicePixelRatio();
  if (shown.size == size && shown.scale == scale) return;
  shown.size = size;
  shown.scale = scale;
  _module.resize(shown.view, size, scale);
}

}  // namespace pelmora::host
