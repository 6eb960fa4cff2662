#pragma once

#include <vips/vips.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace pelmora::bench {

struct VipsImageDeleter {
  void operator()(VipsImage* image) const { g_object_unref(image); }
};
using VipsPointer = std::unique_ptr<VipsImage, VipsImageDeleter>;

/// Ends the program when a step of libvips failed: without it there is nothing to measure.
inline void mustWork(int status) {
  if (status == 0) return;
  std::fprintf(stderr, "libvips: %s\n", vips_error_buffer());
  std::exit(1);
}

/// The picture whole in memory, in 8 bits: nothing is decoded again.
inline VipsPointer inMemory(VipsPointer picture) {
  VipsImage* copy = vips_image_copy_memory(picture.get());
  mustWork(copy ? 0 : 1);
  return VipsPointer(copy);
}

}  // namespace pelmora::bench
