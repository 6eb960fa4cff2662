#include "host/CoverWindow.h"

#include "wayland/QtHandles.h"

#include <qpa/qplatformscreen.h>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <chrono>
#include <utility>

namespace pelmora::host {

namespace {

/// A compositor that has not said a layer's size by then never will.
constexpr std::chrono::seconds kPatience{3};

constexpr Qt::WindowFlags kFlags = Qt::Window | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint;

bool isX11() { return QGuiApplication::platformName() == "xcb"; }

/// The compositor's points to Qt's, which are others where Qt is told to scale on its own.
QSize inPointsOf(const QScreen& screen, const QSize& size) {
  const QSize native = screen.handle() ? screen.handle()->geometry().size() : QSize();
  const QSize points = screen.geometry().size();
  if (native.isEmpty() || size == native) return points;
  return {size.width() * points.width() / native.width(),
          size.height() * points.height() / native.height()};
}

}  // namespace

CoverWindow::CoverWindow(QWindow& window, QScreen& screen, const wayland::LayerShell* layers,
                         std::function<void()> closed)
    : _window(window), _screen(screen), _closed(std::move(closed)) {
  _patience.setSingleShot(true);
  connect(&_patience, &QTimer::timeout, this, [this] {
    _layer.reset();
    _window.destroy();
    coverByFullScreen();
  });
  connect(&screen, &QScreen::geometryChanged, this, [this] { followScreen(); });
  _window.setScreen(&screen);
  _window.setCursor(Qt::BlankCursor);
  // Until the window system says a size the screen's is right.
  _window.setGeometry(screen.geometry());
  if (!layers || !coverByLayer(*layers)) coverByFullScreen();
}

CoverWindow::~CoverWindow() {
  // In this order: the layer stands on the window's surface.
  _layer.reset();
  _window.hide();
  _window.destroy();
}

bool CoverWindow::coverByLayer(const wayland::LayerShell& layers) {
  _window.setFlags(kFlags | Qt::BypassWindowManagerHint);
  _window.create();
  wl_surface* surface = wayland::surfaceOf(_window);
  wl_output* output = wayland::outputOf(_screen);
  if (!surface || !output) {
    _window.destroy();
    return false;
  }
  _layer = std::make_unique<wayland::LayerSurface>(
      layers, surface, output,
      wayland::LayerSurface::Events{
          .configured = [this](std::uint32_t width,
                               std::uint32_t height) { sizeLayer(width, height); },
          .closed =
              [this] {
                // Later, and from a copy: it may be the end of this.
                QMetaObject::invokeMethod(this, _closed, Qt::QueuedConnection);
              }});
  _patience.start(kPatience);
  return true;
}

void CoverWindow::coverByFullScreen() {
  _window.setFlags(kFlags);
  _window.showFullScreen();
}

void CoverWindow::showAgain() {
  _window.hide();
  coverByFullScreen();
}

void CoverWindow::sizeLayer(std::uint32_t width, std::uint32_t height) {
  constexpr std::uint32_t kLargest = 1 << 16;
  _patience.stop();
  QSize size = _screen.geometry().size();
  if (width > 0 && height > 0 && width <= kLargest && height <= kLargest) {
    size = inPointsOf(_screen, {static_cast<int>(width), static_cast<int>(height)});
  }
  _window.resize(size);
  _window.show();
}

/// Compositors on Wayland say the new size themselves; on X11 it may be that nobody does.
void CoverWindow::followScreen() {
  if (isX11()) _window.setGeometry(_screen.geometry());
}

}  // namespace pelmora::host
