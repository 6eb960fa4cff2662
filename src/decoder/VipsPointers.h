#pragma once

#include "shared/Result.h"

#include <vips/vips.h>

#include <memory>

namespace pelmora::decoder {

struct VipsObjectDeleter {
  void operator()(void* object) const { g_object_unref(object); }
};
using SourcePointer = std::unique_ptr<VipsSource, VipsObjectDeleter>;
using ImagePointer = std::unique_ptr<VipsImage, VipsObjectDeleter>;
using RegionPointer = std::unique_ptr<VipsRegion, VipsObjectDeleter>;

/// "it is damaged", with the first line of what libvips last said, which is forgotten by this.
[[nodiscard]] Error damagedPicture();

}  // namespace pelmora::decoder
