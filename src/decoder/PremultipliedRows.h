#pragma once

#include "decoder/RowReader.h"

#include <memory>

namespace pelmora::decoder {

/// The rows of a picture with alpha as 16-bit rows whose colours are multiplied by it, so that a
/// transparent pixel's colour does not bleed into its neighbours when they are mixed.
/// 8-bit values are widened by 257. Thread: one. Owns what it reads from.
std::unique_ptr<RowReader> premultipliedRows(std::unique_ptr<RowReader> rows);

}  // namespace pelmora::decoder
