#pragma once

#include "decoder/RowReader.h"

#include <cstdint>
#include <vector>

namespace pelmora::decoder {

/// A small picture in memory, its rows without gaps, in the layout of `format`. Where `format` has
/// alpha, `premultiplied` tells whether the colours are multiplied by it.
struct Raster {
  RowFormat format;
  bool premultiplied = false;
  std::vector<std::byte> bytes;
};

}  // namespace pelmora::decoder
