#include "platform/Displays.h"

#include <cstdio>

namespace pelmora::platform {

std::string describe(const Rect& rect) {
  char text[160];
  std::snprintf(text, sizeof text, "{{%g, %g}, {%g, %g}}", rect.origin.x, rect.origin.y,
                rect.size.width, rect.size.height);
  return text;
}

std::string describe(const Display& display) {
  return display.name + " " + describe(display.frame);
}

}  // namespace pelmora::platform
