#pragma once

#include "platform/Clock.h"
#include "render/LayerTree.h"
#include "render/SoftwareCompositor.h"
#include "shared/Geometry.h"

#include <QImage>

#include <memory>

namespace pelmora::host {

/// Presents to a picture in memory, at the moments that are asked for. An animation begins when it
/// is submitted: this presenter is never late. Thread: main.
class OffscreenPresenter : public render::Presenter {
 public:
  OffscreenPresenter(const platform::Clock& clock, const Size& size, double scale);

  void submit(std::shared_ptr<const render::Snapshot> snapshot) override;
  /// What was submitted last; null before.
  [[nodiscard]] const std::shared_ptr<const render::Snapshot>& snapshot() const {
    return _snapshot;
  }
  /// The picture at a media time; black before anything was submitted.
  [[nodiscard]] const QImage& paint(double time);

 private:
  const platform::Clock& _clock;
  render::SoftwareCompositor _compositor;
  QImage _picture;
  std::shared_ptr<const render::Snapshot> _snapshot;
};

}  // namespace pelmora::host
