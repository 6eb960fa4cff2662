#include "decoder/tests/PaintedJxl.h"

#include <jxl/encode.h>

#include <stdexcept>

namespace pelmora::decoder {

namespace {

struct EncoderDeleter {
  void operator()(JxlEncoder* encoder) const { JxlEncoderDestroy(encoder); }
};

void check(JxlEncoderStatus status) {
  if (status != JXL_ENC_SUCCESS) throw std::runtime_error("the encoder failed");
}

JxlColorEncoding encodingOf(const VideoColors& colors) {
  JxlColorEncoding encoding{};
  encoding.color_space = JXL_COLOR_SPACE_RGB;
  encoding.white_point = JXL_WHITE_POINT_D65;
  encoding.primaries =
      static_cast<JxlPrimaries>(colors.primaries == 12 ? int{JXL_PRIMARIES_P3} : colors.primaries);
  encoding.transfer_function = static_cast<JxlTransferFunction>(colors.transfer);
  encoding.rendering_intent = JXL_RENDERING_INTENT_RELATIVE;
  return encoding;
}

void describe(JxlEncoder* encoder, const VipsImage& picture, const JxlWish& wish) {
  JxlBasicInfo info;
  JxlEncoderInitBasicInfo(&info);
  info.xsize = static_cast<std::uint32_t>(picture.Xsize);
  info.ysize = static_cast<std::uint32_t>(picture.Ysize);
  const bool isFloat = picture.BandFmt == VIPS_FORMAT_FLOAT;
  info.bits_per_sample = isFloat ? 32 : 16;
  info.exponent_bits_per_sample = isFloat ? 8 : 0;
  info.uses_original_profile = wish.isLossless ? JXL_TRUE : JXL_FALSE;
  check(JxlEncoderSetBasicInfo(encoder, &info));
  const JxlColorEncoding colors = encodingOf(wish.colors);
  check(JxlEncoderSetColorEncoding(encoder, &colors));
}

std::string output(JxlEncoder* encoder) {
  std::string bytes;
  std::uint8_t block[4096];
  for (JxlEncoderStatus status = JXL_ENC_NEED_MORE_OUTPUT; status == JXL_ENC_NEED_MORE_OUTPUT;) {
    std::uint8_t* next = block;
    std::size_t free = sizeof block;
    status = JxlEncoderProcessOutput(encoder, &next, &free);
    if (status == JXL_ENC_ERROR) throw std::runtime_error("the encoder failed");
    bytes.append(block, next);
  }
  return bytes;
}

}  // namespace

std::string encodedJxl(const VipsPointer& picture, const JxlWish& wish) {
  const std::unique_ptr<JxlEncoder, EncoderDeleter> encoder(JxlEncoderCreate(nullptr));
  describe(encoder.get(), *picture, wish);
  JxlEncoderFrameSettings* frame = JxlEncoderFrameSettingsCreate(encoder.get(), nullptr);
  check(JxlEncoderSetFrameLossless(frame, wish.isLossless ? JXL_TRUE : JXL_FALSE));
  const bool isFloat = picture->BandFmt == VIPS_FORMAT_FLOAT;
  const JxlPixelFormat format{3, isFloat ? JXL_TYPE_FLOAT : JXL_TYPE_UINT16, JXL_NATIVE_ENDIAN, 0};
  const VipsPointer pixels(vips_image_copy_memory(picture.get()));
  check(JxlEncoderAddImageFrame(frame, &format, VIPS_IMAGE_ADDR(pixels.get(), 0, 0),
                                VIPS_IMAGE_SIZEOF_IMAGE(pixels.get())));
  JxlEncoderCloseInput(encoder.get());
  return output(encoder.get());
}

}  // namespace pelmora::decoder
