#pragma once

#include "decoder/RowKernels.h"

namespace pelmora::decoder {

/// For processors with AVX2; null on one without. Samples of 1 or 2 bytes.
[[nodiscard]] const RowKernels* avx2RowKernels(int bytesPerSample);

}  // namespace pelmora::decoder
