#include "decoder/tests/PaintedPicture.h"

#include "decoder/Upright.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <vector>

namespace pelmora::decoder {

namespace {

// By reference: the image is made by the call that `failed` is the outcome of.
VipsPointer checked(int failed, VipsImage* const& image) {
  if (failed != 0) throw std::runtime_error(vips_error_buffer());
  return VipsPointer(image);
}

VipsPointer fromBytes(const std::vector<std::uint8_t>& bytes, int width, int height, int bands) {
  VipsPointer image(vips_image_new_from_memory_copy(bytes.data(), bytes.size(), width, height,
                                                    bands, VIPS_FORMAT_UCHAR));
  if (!image) throw std::runtime_error(vips_error_buffer());
  image->Type = VIPS_INTERPRETATION_sRGB;
  return image;
}

VipsPointer turned(const VipsPointer& image, VipsAngle angle) {
  VipsImage* out = nullptr;
  return checked(vips_rot(image.get(), &out, angle, nullptr), out);
}

VipsPointer flipped(const VipsPointer& image, VipsDirection direction) {
  VipsImage* out = nullptr;
  return checked(vips_flip(image.get(), &out, direction, nullptr), out);
}

std::size_t offsetAt(const Pixels& pixels, double x, double y) {
  const auto [width, height] = pixels.size;
  const int column = std::min(static_cast<int>(x * width), width - 1);
  const int row = std::min(static_cast<int>(y * height), height - 1);
  return 4 * (static_cast<std::size_t>(row) * static_cast<std::size_t>(width) +
              static_cast<std::size_t>(column));
}

}  // namespace

VipsPointer paintQuarters(int width, int height) {
  std::vector<std::uint8_t> bytes;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const bool left = x < width / 2;
      const Rgb& color = y < height / 2 ? (left ? kRed : kGreen) : (left ? kBlue : kWhite);
      for (const int channel : color) bytes.push_back(static_cast<std::uint8_t>(channel));
    }
  }
  return fromBytes(bytes, width, height, 3);
}

VipsPointer paintPlain(int width, int height, const Rgb& color, int alpha) {
  std::vector<std::uint8_t> bytes;
  for (int i = 0; i < width * height; ++i) {
    for (const int channel : color) bytes.push_back(static_cast<std::uint8_t>(channel));
    bytes.push_back(static_cast<std::uint8_t>(alpha));
  }
  return fromBytes(bytes, width, height, 4);
}

VipsPointer paintBars(const std::vector<std::array<double, 3>>& bars, int barWidth, int height) {
  std::vector<std::uint16_t> numbers;
  for (int y = 0; y < height; ++y) {
    for (const auto& bar : bars) {
      for (int x = 0; x < barWidth; ++x) {
        for (const double channel : bar) {
          numbers.push_back(static_cast<std::uint16_t>(std::lround(65535 * channel)));
        }
      }
    }
  }
  VipsPointer image(vips_image_new_from_memory_copy(numbers.data(), 2 * numbers.size(),
                                                    barWidth * static_cast<int>(bars.size()),
                                                    height, 3, VIPS_FORMAT_USHORT));
  if (!image) throw std::runtime_error(vips_error_buffer());
  image->Type = VIPS_INTERPRETATION_RGB16;
  return image;
}

VipsPointer storeTurned(VipsPointer upright, int orientation) {
  VipsPointer stored = std::move(upright);
  if (orientation == 3) stored = turned(stored, VIPS_ANGLE_D180);
  if (orientation == 5 || orientation == 8) stored = turned(stored, VIPS_ANGLE_D90);
  if (orientation == 6 || orientation == 7) stored = turned(stored, VIPS_ANGLE_D270);
  if (orientation == 2 || orientation == 5 || orientation == 7) {
    stored = flipped(stored, VIPS_DIRECTION_HORIZONTAL);
  }
  if (orientation == 4) stored = flipped(stored, VIPS_DIRECTION_VERTICAL);
  VipsImage* out = nullptr;
  stored = checked(vips_copy(stored.get(), &out, nullptr), out);
  vips_image_set_int(stored.get(), VIPS_META_ORIENTATION, orientation);
  return stored;
}

FilePath save(const TemporaryFolder& folder, const VipsPointer& picture, const std::string& name,
              const std::string& options) {
  return folder.write(name, encoded(picture, name.substr(name.rfind('.')), options));
}

std::string encoded(const VipsPointer& picture, const std::string& suffix,
                    const std::string& options) {
  void* bytes = nullptr;
  std::size_t size = 0;
  if (vips_image_write_to_buffer(picture.get(), (suffix + options).c_str(), &bytes, &size,
                                 nullptr) != 0) {
    throw std::runtime_error(vips_error_buffer());
  }
  std::string text(static_cast<const char*>(bytes), size);
  g_free(bytes);
  return text;
}

Result<ShownPicture> show(PictureDecoder& decoder, const FilePath& file, int longestSide) {
  const platform::FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  if (!descriptor.isOpen()) throw std::runtime_error("no such file: " + file.bytes());
  Result<DecodedPicture> decoded = decoder.decode(descriptor.get(), longestSide);
  if (!decoded) return decoded.error();
  const int orientation = decoded->facts.orientation;
  const PixelSize size = uprightSize(decoded->raster.format.size, orientation);
  std::vector<std::uint8_t> bytes(4 * static_cast<std::size_t>(size.width) *
                                  static_cast<std::size_t>(size.height));
  const bool isOpaque = writeUpright(decoded->raster, orientation, bytes);
  const PixelSize own = uprightSize(decoded->facts.storedSize, orientation);
  return ShownPicture{std::move(decoded->facts),
                      {double(own.width), double(own.height)},
                      Pixels{size, isOpaque, std::move(bytes)}};
}

Rgb colorAt(const Pixels& pixels, double x, double y) {
  const std::uint8_t* pixel = &pixels.bytes[offsetAt(pixels, x, y)];
  return {pixel[2], pixel[1], pixel[0]};
}

int alphaAt(const Pixels& pixels, double x, double y) {
  return pixels.bytes[offsetAt(pixels, x, y) + 3];
}

int difference(const Rgb& a, const Rgb& b) {
  int worst = 0;
  for (std::size_t i = 0; i < 3; ++i) worst = std::max(worst, std::abs(a[i] - b[i]));
  return worst;
}

int differenceFromQuarters(const Pixels& pixels) {
  return std::max({difference(colorAt(pixels, 0.2, 0.2), kRed),
                   difference(colorAt(pixels, 0.8, 0.2), kGreen),
                   difference(colorAt(pixels, 0.2, 0.8), kBlue),
                   difference(colorAt(pixels, 0.8, 0.8), kWhite)});
}

}  // namespace pelmora::decoder
