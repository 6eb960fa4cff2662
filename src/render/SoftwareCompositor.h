#pragma once

#include "render/DrawList.h"

#include <QImage>
#include <QRegion>

#include <vector>

namespace pelmora::render {

/// Paints snapshots into an image. What does not move is kept flattened in a backdrop, so that a
/// frame of an entrance costs one restored rectangle and one warped picture. The pixels depend on
/// the snapshot and the time alone, not on the frames painted before. Thread: one at a time. Units:
/// device pixels.
class SoftwareCompositor {
 public:
  /// Brings `target` (32 bits a pixel), which holds what the last call painted, to what `snapshot`
  /// shows at `time`. The answer is the part that was written.
  QRegion paint(QImage& target, const Snapshot& snapshot, double time);
  /// The next call paints everything, as the target holds something else.
  void invalidate() { _isTargetValid = false; }

 private:
  QRegion updateBackdrop(const QSize& size, const Snapshot& snapshot,
                         std::vector<DrawItem> resting);
  void repairBackdrop(const QRegion& damage, std::vector<DrawItem>::const_iterator end);

  QImage _backdrop;
  std::vector<FillItem> _background;
  std::vector<DrawItem> _resting;  // in the backdrop
  std::vector<DrawItem> _live;     // in the target, over the backdrop
  bool _isTargetValid = false;
};

}  // namespace pelmora::render
