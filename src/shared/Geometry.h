#pragma once

namespace pelmora {

/// A place in points (logical pixels), origin lower left, y upward, as everywhere in the model.
struct Point {
  double x = 0;
  double y = 0;
  bool operator==(const Point&) const = default;
};

/// An extent in points. Device pixels have a type of their own (`PixelSize`).
struct Size {
  double width = 0;
  double height = 0;
  bool operator==(const Size&) const = default;
};

/// An extent in device pixels.
struct PixelSize {
  int width = 0;
  int height = 0;
  bool operator==(const PixelSize&) const = default;
};

/// A rectangle in points; `origin` is its lower left corner.
struct Rect {
  Point origin;
  Size size;
  bool operator==(const Rect&) const = default;

  [[nodiscard]] double minX() const { return origin.x; }
  [[nodiscard]] double minY() const { return origin.y; }
  [[nodiscard]] double maxX() const { return origin.x + size.width; }
  [[nodiscard]] double maxY() const { return origin.y + size.height; }
};

/// `rect` with its left and right edges moved in by `dx`, bottom and top by `dy`; negative grows
/// it.
[[nodiscard]] constexpr Rect insetRect(const Rect& rect, double dx, double dy) {
  return {{rect.origin.x + dx, rect.origin.y + dy},
          {rect.size.width - 2 * dx, rect.size.height - 2 * dy}};
}

/// A colour in sRGB, components 0 to 1, not premultiplied.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;
  bool operator==(const Color&) const = default;
};

}  // namespace pelmora
