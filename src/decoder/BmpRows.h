#pragma once

#include "decoder/RowReader.h"

#include <memory>

namespace pelmora::decoder {

/// Loads gdk-pixbuf's reader of BMP files, which is a module: before the process is shut off from
/// the file system. Where there is none, `openBmp` says so. Thread: the one that decodes.
void startBmp();

/// Opens a BMP of any of the usual kinds: 1 to 32 bits, with colour tables, run lengths, bit masks
/// and alpha, from the top or from the bottom. Its colours are taken for sRGB.
/// Errors: limits (`PictureLimits.h`), damage, a file without all of its rows; one short line.
/// Thread: one. Memory: the picture whole, as rows come from the bottom.
[[nodiscard]] Result<std::unique_ptr<RowReader>> openBmp(int descriptor);

}  // namespace pelmora::decoder
