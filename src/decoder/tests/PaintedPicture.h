#pragma once

#include "decoder/PictureDecoder.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/Image.h"

#include <vips/vips.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace pelmora::decoder {

using platform::Pixels;
using platform::TemporaryFolder;

struct VipsImageDeleter {
  void operator()(VipsImage* image) const { g_object_unref(image); }
};
using VipsPointer = std::unique_ptr<VipsImage, VipsImageDeleter>;

using Rgb = std::array<int, 3>;
constexpr Rgb kRed{200, 40, 40};
constexpr Rgb kGreen{40, 160, 60};
constexpr Rgb kBlue{50, 60, 180};
constexpr Rgb kWhite{240, 240, 240};

/// A picture in sRGB whose quarters are red and green above, blue and white below: it tells every
/// turn, flip and mix-up of colours. Errors: a failed step throws, which fails the test.
[[nodiscard]] VipsPointer paintQuarters(int width = 48, int height = 32);
/// The picture as a camera stores it that was held so that the file needs this EXIF orientation.
[[nodiscard]] VipsPointer storeTurned(VipsPointer upright, int orientation);
/// One colour with an alpha of its own.
[[nodiscard]] VipsPointer paintPlain(int width, int height, const Rgb& color, int alpha);

/// Bars of equal width from left to right, RGB; fractions of 1 in 16 bits.
[[nodiscard]] VipsPointer paintBars(const std::vector<std::array<double, 3>>& bars,
                                    int barWidth = 16, int height = 32);

/// Writes it as the format of the name's suffix; `options` are the saver's, such as "[Q=90]".
FilePath save(const TemporaryFolder& folder, const VipsPointer& picture, const std::string& name,
              const std::string& options = {});
/// The bytes of the file that `save` writes.
[[nodiscard]] std::string encoded(const VipsPointer& picture, const std::string& suffix,
                                  const std::string& options = {});

/// A picture as a screen gets it: upright, its size that of the file.
struct ShownPicture {
  PictureFacts facts;
  Size size;  // upright, as in the file
  Pixels pixels;
};
[[nodiscard]] Result<ShownPicture> show(PictureDecoder& decoder, const FilePath& file,
                                        int longestSide = 1000);

/// The colour (as stored: premultiplied) at a place given in fractions of the picture.
[[nodiscard]] Rgb colorAt(const Pixels& pixels, double x, double y);
[[nodiscard]] int alphaAt(const Pixels& pixels, double x, double y);
/// The largest difference of a channel.
[[nodiscard]] int difference(const Rgb& a, const Rgb& b);
/// How far the four quarters of `pixels` are from those of `paintQuarters`, at worst.
[[nodiscard]] int differenceFromQuarters(const Pixels& pixels);

}  // namespace pelmora::decoder
