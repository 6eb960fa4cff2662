#include "platform/Displays.h"

#include <charconv>
#include <iterator>

namespace pelmora::platform {

namespace {

/// As "%g" has it, but with a point in every language.
std::string textOf(double number) {
  char digits[32];
  const auto [end, error] =
      std::to_chars(std::begin(digits), std::end(digits), number, std::chars_format::general, 6);
  return {digits, end};
}

}  // namespace

std::string describe(const Rect& rect) {
  return "{{" + textOf(rect.origin.x) + ", " + textOf(rect.origin.y) + "}, {" +
         textOf(rect.size.width) + ", " + textOf(rect.size.height) + "}}";
}

std::string describe(const Display& display) {
  return display.name + " " + describe(display.frame);
}

}  // namespace pelmora::platform
