#include "decoder/JxlColors.h"

#include <jxl/decode.h>
#include <jxl/version.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace pelmora::decoder {

namespace {

constexpr std::size_t kStep = 16 * 1024;
// EXIF with a preview may come first; colours that lie beyond are not looked for.
constexpr std::size_t kMostBytes = 1024 * 1024;

struct DecoderDeleter {
  void operator()(JxlDecoder* decoder) const { JxlDecoderDestroy(decoder); }
};

VideoColors asVideo(const JxlColorEncoding& encoding) {
  if (encoding.color_space != JXL_COLOR_SPACE_RGB) return {};
  const bool hasItsWhite = encoding.white_point == JXL_WHITE_POINT_D65;
  if (encoding.primaries == JXL_PRIMARIES_SRGB && !hasItsWhite) return {};
  VideoColors colors{.primaries = encoding.primaries, .transfer = encoding.transfer_function};
  if (encoding.primaries == JXL_PRIMARIES_P3 && hasItsWhite) colors.primaries = 12;
  return colors;
}

/// How the colours are encoded, if the file says so in words instead of by a profile.
JxlDecoderStatus colorEncoding(const JxlDecoder* decoder, JxlColorEncoding* encoding) {
#if JPEGXL_NUMERIC_VERSION >= JPEGXL_COMPUTE_NUMERIC_VERSION(0, 9, 0)
  return JxlDecoderGetColorAsEncodedProfile(decoder, JXL_COLOR_PROFILE_TARGET_DATA, encoding);
#else  // where a format was asked for, which was never used
  return JxlDecoderGetColorAsEncodedProfile(decoder, nullptr, JXL_COLOR_PROFILE_TARGET_DATA,
                                            encoding);
#endif
}

VideoColors colorsOf(JxlDecoder* decoder) {
  JxlColorEncoding encoding{};
  const bool isEncoded = colorEncoding(decoder, &encoding) == JXL_DEC_SUCCESS;
  return isEncoded ? asVideo(encoding) : VideoColors{};
}

}  // namespace

VideoColors jxlColors(int descriptor) {
  const std::unique_ptr<JxlDecoder, DecoderDeleter> decoder(JxlDecoderCreate(nullptr));
  if (!decoder) return {};
  if (JxlDecoderSubscribeEvents(decoder.get(), JXL_DEC_COLOR_ENCODING) != JXL_DEC_SUCCESS) {
    return {};
  }
  std::vector<std::uint8_t> bytes(2 * kStep);
  std::size_t kept = 0;  // bytes that the decoder gave back to get them again with more
  for (std::size_t read = 0; read < kMostBytes && kept < kStep;) {
    const ssize_t count = pread(descriptor, bytes.data() + kept, kStep, static_cast<off_t>(read));
    if (count <= 0) return {};
    read += static_cast<std::size_t>(count);
    const std::size_t given = kept + static_cast<std::size_t>(count);
    if (JxlDecoderSetInput(decoder.get(), bytes.data(), given) != JXL_DEC_SUCCESS) return {};
    const JxlDecoderStatus status = JxlDecoderProcessInput(decoder.get());
    if (status == JXL_DEC_COLOR_ENCODING) return colorsOf(decoder.get());
    if (status != JXL_DEC_NEED_MORE_INPUT) return {};
    kept = JxlDecoderReleaseInput(decoder.get());
    std::copy(bytes.data() + (given - kept), bytes.data() + given, bytes.data());
  }
  return {};
}

}  // namespace pelmora::decoder
