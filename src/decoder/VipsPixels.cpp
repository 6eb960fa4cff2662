#include "decoder/VipsPixels.h"

#include "decoder/VideoColors.h"

#include <algorithm>

namespace pelmora::decoder {

namespace {

/// The image that a step of libvips makes of `image`, which may fail.
template <typename Step>
ImagePointer after(const ImagePointer& image, Step step) {
  VipsImage* out = nullptr;
  if (!image || step(image.get(), &out) != 0) return nullptr;
  return ImagePointer(out);
}

std::string profileOf(VipsImage* image) {
  const void* data = nullptr;
  std::size_t size = 0;
  if (vips_image_get_typeof(image, VIPS_META_ICC_NAME) == 0 ||
      vips_image_get_blob(image, VIPS_META_ICC_NAME, &data, &size) != 0) {
    return {};
  }
  return std::string(static_cast<const char*>(data), size);
}

bool isMeasured(VipsInterpretation kind) {
  switch (kind) {
    case VIPS_INTERPRETATION_LAB:
    case VIPS_INTERPRETATION_LABQ:
    case VIPS_INTERPRETATION_LABS:
    case VIPS_INTERPRETATION_LCH:
    case VIPS_INTERPRETATION_CMC:
    case VIPS_INTERPRETATION_XYZ:
    case VIPS_INTERPRETATION_YXY:
    case VIPS_INTERPRETATION_HSV:
      return true;
    default:
      return false;
  }
}

ImagePointer cast(const ImagePointer& image, VipsBandFormat format) {
  return after(image,
               [&](VipsImage* in, VipsImage** out) { return vips_cast(in, out, format, nullptr); });
}

ImagePointer scaled(const ImagePointer& image, double factor) {
  return after(image, [&](VipsImage* in, VipsImage** out) {
    return vips_linear1(in, out, factor, 0.5, nullptr);
  });
}

/// The same numbers, or their upper bits, as 8 or 16 bits without a sign; null with no text from
/// libvips for numbers that have no such meaning.
ImagePointer unsignedNumbers(ImagePointer image, bool isCmyk) {
  switch (vips_image_get_format(image.get())) {
    case VIPS_FORMAT_UCHAR:
      return image;
    case VIPS_FORMAT_CHAR:
      return cast(image, VIPS_FORMAT_UCHAR);
    case VIPS_FORMAT_USHORT:
      // Inks come in 8 bits from nearly every file.
      return isCmyk ? cast(scaled(image, 1 / 257.0), VIPS_FORMAT_UCHAR) : std::move(image);
    case VIPS_FORMAT_SHORT:
      return cast(image, VIPS_FORMAT_USHORT);
    case VIPS_FORMAT_UINT:
    case VIPS_FORMAT_INT:
      return cast(scaled(image, 1 / 65536.0), VIPS_FORMAT_USHORT);
    case VIPS_FORMAT_FLOAT:
    case VIPS_FORMAT_DOUBLE:
      return cast(scaled(image, 65535.0), VIPS_FORMAT_USHORT);
    default:
      return nullptr;
  }
}

RowFormat rowFormat(VipsImage* image, bool isCmyk) {
  const int bands = vips_image_get_bands(image);
  RowFormat format;
  format.size = {vips_image_get_width(image), vips_image_get_height(image)};
  format.bytesPerChannel = vips_image_get_format(image) == VIPS_FORMAT_USHORT ? 2 : 1;
  format.model = isCmyk ? ColorModel::cmyk : bands < 3 ? ColorModel::grey : ColorModel::rgb;
  format.hasAlpha = !isCmyk && (bands == 2 || bands >= 4);
  return format;
}

}  // namespace

Result<PlainPixels> plainPixels(ImagePointer image) {
  std::string profile = profileOf(image.get());
  const VipsInterpretation kind = vips_image_guess_interpretation(image.get());
  if (isMeasured(kind)) {
    profile.clear();
    image = after(image, [](VipsImage* in, VipsImage** out) {
      return vips_colourspace(in, out, VIPS_INTERPRETATION_RGB16, nullptr);
    });
    if (!image) return damagedPicture();
  } else if (kind == VIPS_INTERPRETATION_scRGB && profile.empty()) {
    profile = decoder::profileOf(VideoColors{.primaries = 1, .transfer = 8});
  }
  const bool isCmyk = kind == VIPS_INTERPRETATION_CMYK && vips_image_get_bands(image.get()) >= 4;
  image = unsignedNumbers(std::move(image), isCmyk);
  if (!image) return Error{"its colours are of no known kind"};
  const RowFormat format = rowFormat(image.get(), isCmyk);
  if (vips_image_get_bands(image.get()) > format.channels()) {
    image = after(image, [&](VipsImage* in, VipsImage** out) {
      return vips_extract_band(in, out, 0, "n", format.channels(), nullptr);
    });
    if (!image) return damagedPicture();
  }
  return PlainPixels{std::move(image), format, std::move(profile)};
}

}  // namespace pelmora::decoder
