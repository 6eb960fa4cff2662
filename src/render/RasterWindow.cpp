#include "render/RasterWindow.h"

#include "platform/Clock.h"
#include "render/Snapshot.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelmora::render {

namespace {

constexpr auto kSubmitted = QEvent::User;
constexpr double kUsualRefreshRate = 60;

/// Where the window system says when a frame is wanted. Elsewhere the window keeps time itself: the
/// toolkit's own update requests come as fast as they can be drawn.
bool hasFrameCallbacks() { return QGuiApplication::platformName().startsWith("wayland"); }

bool isPaintable(const QImage* image) {
  return image != nullptr && (image->format() == QImage::Format_RGB32 ||
                              image->format() == QImage::Format_ARGB32_Premultiplied);
}

/// The device pixels of a rectangle in the window's own, perhaps larger, units, grown to whole
/// ones.
QRect inWindowUnits(const QRect& pixels, double scale) {
  return QRectF(pixels.x() / scale, pixels.y() / scale, pixels.width() / scale,
                pixels.height() / scale)
      .toAlignedRect();
}

}  // namespace

RasterWindow::RasterWindow(const platform::Clock& clock, QWindow* parent)
    : QWindow(parent), _clock(clock), _slot(clock), _store(this) {
  setSurfaceType(QSurface::RasterSurface);
}

RasterWindow::~RasterWindow() { _slot.setShown(false); }

void RasterWindow::submit(std::shared_ptr<const Snapshot> snapshot) {
  _slot.put(std::move(snapshot));
  QCoreApplication::postEvent(this, new QEvent(kSubmitted));
}

bool RasterWindow::event(QEvent* event) {
  if (event->type() == kSubmitted) {
    if (!_isFrameDue) drawFrame();
    return true;
  }
  if (event->type() == QEvent::UpdateRequest) {
    drawFrame();
    return true;
  }
  return QWindow::event(event);
}

void RasterWindow::exposeEvent(QExposeEvent* /*event*/) {
  _slot.setShown(isExposed());
  if (!isExposed()) return stopFrames();
  _compositor.invalidate();
  drawFrame();
}

void RasterWindow::resizeEvent(QResizeEvent* /*event*/) {
  _compositor.invalidate();
  drawFrame();
}

void RasterWindow::timerEvent(QTimerEvent* event) {
  if (event->timerId() == _timer) drawFrame();
}

void RasterWindow::drawFrame() {
  stopFrames();
  // A window that was closed may still call itself exposed.
  if (!isExposed() || !handle() || size().isEmpty()) return;
  if (_store.size() != size()) {
    _store.resize(size());
    _compositor.invalidate();
  }
  static const Snapshot kBlack;
  const std::shared_ptr<const Snapshot> newest = _slot.newest();
  const Snapshot& snapshot = newest ? *newest : kBlack;
  const double start = _clock.mediaTime();
  snapshot.beginAnimations(start);

  _store.beginPaint(QRect({}, size()));
  const QRegion painted = paint(snapshot, start);
  _store.endPaint();
  flush(painted);
  if (snapshot.movesAt(start)) arrangeNextFrame(start, painted.isEmpty());
}

QRegion RasterWindow::paint(const Snapshot& snapshot, double time) {
  QPaintDevice* device = _store.paintDevice();
  auto* image = device->devType() == QInternal::Image ? static_cast<QImage*>(device) : nullptr;
  if (isPaintable(image)) return _compositor.paint(*image, snapshot, time);

  const QSize pixels = (QSizeF(size()) * devicePixelRatio()).toSize();
  if (_frame.size() != pixels) {
    _frame = QImage(pixels, QImage::Format_RGB32);
    _compositor.invalidate();
  }
  const QRegion painted = _compositor.paint(_frame, snapshot, time);
  QPainter painter(device);
  painter.scale(1 / devicePixelRatio(), 1 / devicePixelRatio());
  for (const QRect& rect : painted) painter.drawImage(rect, _frame, rect);
  return painted;
}

void RasterWindow::flush(const QRegion& painted) {
  if (painted.isEmpty()) return;
  QRegion region;
  for (const QRect& rect : painted) region += inWindowUnits(rect, devicePixelRatio());
  _store.flush(region & QRect({}, size()));
  ++_framesDrawn;
}

/// A frame that painted nothing was not handed to the window system, which so has no reason to call
/// back in time.
void RasterWindow::arrangeNextFrame(double frameStart, bool paintedNothing) {
  _isFrameDue = true;
  if (hasFrameCallbacks() && !paintedNothing) return requestUpdate();
  const double rate = screen() != nullptr ? screen()->refreshRate() : 0;
  const double interval = 1 / (rate > 1 ? rate : kUsualRefreshRate);
  // On a grid, so that the timer's whole milliseconds do not add up to a slower rate.
  const bool isOnTime = std::abs(frameStart - _nextFrame) < interval;
  _nextFrame = (isOnTime ? _nextFrame : frameStart) + interval;
  const double wait = std::max(0.0, _nextFrame - _clock.mediaTime());
  _timer = startTimer(static_cast<int>(std::lround(wait * 1000)), Qt::PreciseTimer);
}

void RasterWindow::stopFrames() {
  _isFrameDue = false;
  if (_timer != 0) killTimer(std::exchange(_timer, 0));
}

}  // namespace pelmora::render
