#include "host/OffscreenPresenter.h"

#include "render/Snapshot.h"

#include <cmath>

namespace pelmora::host {

OffscreenPresenter::OffscreenPresenter(const platform::Clock& clock, const Size& size, double scale)
    : _clock(clock),
      _picture(static_cast<int>(std::lround(size.width * scale)),
               static_cast<int>(std::lround(size.height * scale)),
               QImage::Format_ARGB32_Premultiplied) {
  _picture.fill(Qt::black);
}

void OffscreenPresenter::submit(std::shared_ptr<const render::Snapshot> snapshot) {
  snapshot->beginAnimations(_clock.mediaTime());
  _snapshot = std::move(snapshot);
}

const QImage& OffscreenPresenter::paint(double time) {
  if (_snapshot) _compositor.paint(_picture, *_snapshot, time);
  return _picture;
}

}  // namespace pelmora::host
