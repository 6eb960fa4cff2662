#pragma once

#include "render/AttributedString.h"
#include "render/Layer.h"

#include <QImage>
#include <QRectF>

#include <memory>
#include <optional>
#include <vector>

namespace pelmora::render {

/// A layer's whole looks in one picture: its fills, contents and text with the shadow below them,
/// in device pixels, premultiplied, with a transparent margin on every side. One picture makes a
/// card one draw; the shadow turns with it, and sampling across the margin gives it smooth edges at
/// any tilt. Thread: immutable, shared.
struct BakedPicture {
  QImage image;           // Format_ARGB32_Premultiplied
  QRectF bounds;          // where in `image` the layer's bounds lie
  bool isOpaque = false;  // within the bounds
};

/// All that a baked picture shows.
struct PictureSource {
  QImage contents;
  std::vector<LayerContext::Fill> fills;
  Rect bounds;
  std::optional<Color> backgroundColor = std::nullopt;
  double cornerRadius = 0;  // of the background and the fills
  std::optional<TextBlock> text = std::nullopt;
  Size shadowOffset;
  double shadowRadius = 0;
  double shadowOpacity = 0;
  double scale = 1;  // device pixels in a point
};

/// Null for what shows nothing: no area, or nothing in it. What would take more pixels than a
/// picture may have is coarser instead.
[[nodiscard]] std::shared_ptr<const BakedPicture> bake(const PictureSource& source);

}  // namespace pelmora::render
