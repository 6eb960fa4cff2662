#include "render/Animation.h"

namespace pelmora::render {

const char* description(KeyPath keyPath) {
  switch (keyPath) {
    case KeyPath::position:
      return "position";
    case KeyPath::opacity:
      return "opacity";
    case KeyPath::scale:
      return "transform.scale";
    case KeyPath::rotation:
      break;
  }
  return "transform.rotation.z";
}

}  // namespace pelmora::render
