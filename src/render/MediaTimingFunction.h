#pragma once

namespace pelmora::render {

/// A cubic Bézier curve from (0, 0) to (1, 1) that maps the fraction of time gone to the fraction
/// of the way, as defined for CSS easing functions (W3C "CSS Easing Functions Level 1",
/// section 2.2). A plain value; solved to 1e-6 or better.
class MediaTimingFunction {
 public:
  enum class Name { standard, easeIn, easeOut, linear };

  constexpr MediaTimingFunction() = default;  // linear
  constexpr explicit MediaTimingFunction(Name name) : _name(name) {}

  /// The fraction of the way at `fraction` of the time; `fraction` is clamped to [0, 1].
  [[nodiscard]] double valueAt(double fraction) const;
  [[nodiscard]] constexpr Name name() const { return _name; }
  /// "default", "easeIn", "easeOut" or "linear".
  [[nodiscard]] const char* description() const;

 private:
  Name _name = Name::linear;
};

}  // namespace pelmora::render
