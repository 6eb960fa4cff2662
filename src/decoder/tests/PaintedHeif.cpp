#include "decoder/tests/PaintedHeif.h"

#include <libheif/heif.h>

#include <cstring>
#include <stdexcept>

namespace pelmora::decoder {

namespace {

template <typename T, auto release>
struct Releaser {
  void operator()(T* object) const { release(object); }
};
using Context = std::unique_ptr<heif_context, Releaser<heif_context, heif_context_free>>;
using Encoder = std::unique_ptr<heif_encoder, Releaser<heif_encoder, heif_encoder_release>>;
using Picture = std::unique_ptr<heif_image, Releaser<heif_image, heif_image_release>>;
using Handle =
    std::unique_ptr<heif_image_handle, Releaser<heif_image_handle, heif_image_handle_release>>;
using Options = std::unique_ptr<heif_encoding_options,
                                Releaser<heif_encoding_options, heif_encoding_options_free>>;
using Colors = std::unique_ptr<heif_color_profile_nclx,
                               Releaser<heif_color_profile_nclx, heif_nclx_color_profile_free>>;

void check(const heif_error& error) {
  if (error.code != heif_error_Ok) throw std::runtime_error(error.message);
}

Picture asHeif(const VipsImage* from, bool isAvif) {
  const int width = from->Xsize;
  const int height = from->Ysize;
  const bool is16 = from->BandFmt == VIPS_FORMAT_USHORT;
  const bool isDeep = is16 && !isAvif;  // the AVIF encoder ends the process over such pictures
  heif_image* made = nullptr;
  check(heif_image_create(width, height, heif_colorspace_RGB,
                          isDeep ? heif_chroma_interleaved_RRGGBB_LE : heif_chroma_interleaved_RGB,
                          &made));
  Picture image(made);
  check(heif_image_add_plane(made, heif_channel_interleaved, width, height, isDeep ? 10 : 8));
  int stride = 0;
  std::uint8_t* plane = heif_image_get_plane(made, heif_channel_interleaved, &stride);
  const VipsPointer pixels(vips_image_copy_memory(const_cast<VipsImage*>(from)));
  for (int y = 0; y < height; ++y) {
    std::uint8_t* row = plane + std::size_t(stride) * std::size_t(y);
    const void* source = VIPS_IMAGE_ADDR(pixels.get(), 0, y);
    if (!is16) {
      std::memcpy(row, source, std::size_t(width) * 3);
      continue;
    }
    const auto* deep = static_cast<const std::uint16_t*>(source);
    for (int i = 0; i < 3 * width; ++i) {
      if (!isDeep) {
        row[i] = static_cast<std::uint8_t>(deep[i] / 257);
        continue;
      }
      const auto value = static_cast<std::uint16_t>(deep[i] >> 6);
      std::memcpy(row + 2 * i, &value, 2);
    }
  }
  return image;
}

Colors nclx(const VideoColors& colors) {
  Colors box(heif_nclx_color_profile_alloc());
  box->color_primaries = static_cast<heif_color_primaries>(colors.primaries);
  box->transfer_characteristics = static_cast<heif_transfer_characteristics>(colors.transfer);
  box->matrix_coefficients = colors.primaries == 9
                                 ? heif_matrix_coefficients_ITU_R_BT_2020_2_non_constant_luminance
                                 : heif_matrix_coefficients_ITU_R_BT_601_6;
  box->full_range_flag = 1;
  return box;
}

heif_error append(heif_context*, const void* data, std::size_t size, void* to) {
  static_cast<std::string*>(to)->append(static_cast<const char*>(data), size);
  return {heif_error_Ok, heif_suberror_Unspecified, ""};
}

}  // namespace

std::string encodedHeif(const VipsPointer& picture, const HeifWish& wish) {
  const Context context(heif_context_alloc());
  heif_encoder* made = nullptr;
  check(heif_context_get_encoder_for_format(
      context.get(), wish.isAvif ? heif_compression_AV1 : heif_compression_HEVC, &made));
  const Encoder encoder(made);
  check(heif_encoder_set_lossy_quality(made, 95));
  check(heif_encoder_set_parameter_string(made, "chroma", "444"));
  const Picture image = asHeif(picture.get(), wish.isAvif);
  const Colors colors = nclx(wish.colors);
  const Options options(heif_encoding_options_alloc());
  // By default nclx boxes are left out of HEIC files.
  options->macOS_compatibility_workaround_no_nclx_profile = 0;
  if (wish.colors.transfer != 2) {
    options->output_nclx_profile = colors.get();
    check(heif_image_set_nclx_color_profile(image.get(), colors.get()));
  }
  heif_image_handle* primary = nullptr;
  check(heif_context_encode_image(context.get(), image.get(), made, options.get(), &primary));
  const Handle handle(primary);
  if (wish.preview) {
    const Picture preview = asHeif(wish.preview, wish.isAvif);
    heif_image_handle* thumbnail = nullptr;
    check(heif_context_encode_thumbnail(context.get(), preview.get(), primary, made, nullptr,
                                        wish.preview->Xsize / 2, &thumbnail));
    const Handle released(thumbnail);
  }
  heif_writer writer{1, append};
  std::string bytes;
  check(heif_context_write(context.get(), &writer, &bytes));
  return bytes;
}

}  // namespace pelmora::decoder
