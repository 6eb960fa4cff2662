#include "host/PreviewWidget.h"

#include "platform/Clock.h"
#include "render/Snapshot.h"

#include <QPainter>
#include <QTimerEvent>

#include <utility>

namespace pelmora::host {

namespace {

constexpr int kFrameMilliseconds = 16;

}  // namespace

PreviewWidget::PreviewWidget(const platform::Clock& clock, QWidget* parent)
    : QWidget(parent), _clock(clock), _slot(clock) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMinimumSize(160, 100);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

PreviewWidget::~PreviewWidget() { _slot.setShown(false); }

void PreviewWidget::submit(std::shared_ptr<const render::Snapshot> snapshot) {
  _slot.put(std::move(snapshot));
  if (isVisible()) update(drawFrame());
}

QRegion PreviewWidget::drawFrame() {
  const double scale = devicePixelRatioF();
  const QSize pixels = (QSizeF(size()) * scale).toSize();
  if (pixels.isEmpty()) return {};
  if (_frame.size() != pixels) {
    _frame = QImage(pixels, QImage::Format_RGB32);
    _compositor.invalidate();
  }
  static const render::Snapshot kBlack;
  const std::shared_ptr<const render::Snapshot> newest = _slot.newest();
  const render::Snapshot& snapshot = newest ? *newest : kBlack;
  const double now = _clock.mediaTime();
  snapshot.beginAnimations(now);
  const QRegion painted = _compositor.paint(_frame, snapshot, now);
  if (!snapshot.movesAt(now)) {
    _timer.stop();
  } else if (!_timer.isActive()) {
    _timer.start(kFrameMilliseconds, Qt::PreciseTimer, this);
  }
  QRegion region;
  for (const QRect& rect : painted) {
    region +=
        QRectF(rect.x() / scale, rect.y() / scale, rect.width() / scale, rect.height() / scale)
            .toAlignedRect();
  }
  return region;
}

void PreviewWidget::paintEvent(QPaintEvent* /*event*/) {
  const QSize pixels = (QSizeF(size()) * devicePixelRatioF()).toSize();
  if (_frame.size() != pixels) {
    resized();  // onto a display of another scale
    (void)drawFrame();
  }
  QPainter painter(this);
  painter.drawImage(rect(), _frame);
}

void PreviewWidget::resizeEvent(QResizeEvent* /*event*/) {
  resized();
  (void)drawFrame();
}

void PreviewWidget::showEvent(QShowEvent* /*event*/) {
  _slot.setShown(true);
  resized();  // its screen's scale is known by now
  update(drawFrame());
}

void PreviewWidget::hideEvent(QHideEvent* /*event*/) {
  _slot.setShown(false);
  _timer.stop();
}

void PreviewWidget::timerEvent(QTimerEvent* event) {
  if (event->timerId() == _timer.timerId()) update(drawFrame());
}

}  // namespace pelmora::host
