#pragma once

#include "shared/FilePath.h"
#include "VipsPointer.h"

namespace pelmora::bench {

/// The folder of real pictures: the one that PELMORA_CORPUS names, else the one beside the sources;
/// empty when there is none.
[[nodiscard]] FilePath corpusFolder();

/// A picture in sRGB that is as hard to decode as a photograph: a mosaic of real photographs, each
/// at its own resolution and mirrored where it ends; without a corpus, a texture of gradients and
/// of noise at several scales. In memory.
[[nodiscard]] VipsPointer makeCanvas(int width, int height);

}  // namespace pelmora::bench
