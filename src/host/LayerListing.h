#pragma once

#include "render/Snapshot.h"

#include <QJsonObject>

namespace pelmora::view {
class PelmoraView;
}

namespace pelmora::host {

/// What a view shows at a moment, as JSON: its fields and its layers in drawing order, with their
/// model values, running animations and presentation. Lengths in points, angles in radians, times
/// in seconds since `start`; `start` and `time` are media times.
[[nodiscard]] QJsonObject layerListing(const view::PelmoraView& view,
                                       const render::Snapshot& snapshot, double start, double time);

}  // namespace pelmora::host
