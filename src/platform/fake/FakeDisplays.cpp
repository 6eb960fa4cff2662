#include "platform/fake/FakeDisplays.h"

namespace pelmora::platform {

Display FakeDisplays::display(std::uint64_t number, const Rect& frame, double scale) {
  return {number, "Display " + std::to_string(number), frame, scale};
}

}  // namespace pelmora::platform
