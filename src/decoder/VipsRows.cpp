#include "decoder/VipsRows.h"

#include "decoder/HeifColors.h"
#include "decoder/JxlColors.h"
#include "decoder/PictureLimits.h"
#include "decoder/PictureSignature.h"
#include "decoder/PngHeader.h"
#include "decoder/VideoColors.h"
#include "decoder/VipsPixels.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <utility>

namespace pelmora::decoder {

namespace {

/// Rows that are asked for together: libvips begins anew for each request.
constexpr int kStripRows = 16;

/// The formats that are read, by how the class of libvips' reader begins; a blocked one is never
/// found.
constexpr std::array<std::pair<std::string_view, std::string_view>, 7> kFormats{{
    {"VipsForeignLoadJpeg", "JPEG"},
    {"VipsForeignLoadPng", "PNG"},
    {"VipsForeignLoadWebp", "WebP"},
    {"VipsForeignLoadTiff", "TIFF"},
    {"VipsForeignLoadNsgif", "GIF"},
    {"VipsForeignLoadHeif", "HEIC"},
    {"VipsForeignLoadJxl", "JPEG XL"},
}};

class VipsRows : public RowReader {
 public:
  VipsRows(SourcePointer source, PlainPixels pixels, PictureFacts facts)
      : _source(std::move(source)),
        _image(std::move(pixels.image)),
        _region(vips_region_new(_image.get())),
        _format(pixels.format),
        _facts(std::move(facts)) {}

  const PictureFacts& facts() const override { return _facts; }
  const RowFormat& format() const override { return _format; }
  Status readRow(std::span<std::byte> row) override;
  Status finish() override;

 private:
  Status prepareStrip();

  // In this order: each uses the one above it.
  SourcePointer _source;
  ImagePointer _image;
  RegionPointer _region;
  RowFormat _format;
  PictureFacts _facts;
  int _next = 0;      // row
  int _prepared = 0;  // rows from the top that have been asked for
  bool _failed = false;
};

Status VipsRows::prepareStrip() {
  const VipsRect strip{0, _next, _format.size.width,
                       std::min(kStripRows, _format.size.height - _next)};
  if (vips_region_prepare(_region.get(), &strip) != 0) {
    _failed = true;
    return damagedPicture();
  }
  _prepared = _next + strip.height;
  return Done{};
}

Status VipsRows::readRow(std::span<std::byte> row) {
  if (_failed) return Error{"it is damaged"};
  if (_next >= _format.size.height) return Error{"it has no more rows"};
  if (_next >= _prepared) {
    if (Status status = prepareStrip(); !status) return status;
  }
  std::memcpy(row.data(), VIPS_REGION_ADDR(_region.get(), 0, _next), _format.bytesPerRow());
  ++_next;
  return Done{};
}

Status VipsRows::finish() {
  if (_failed) return Error{"it is damaged"};
  return Done{};
}

/// A picture whose header is read and whose pixels are not.
struct Opened {
  ImagePointer image;
  std::string_view format;
  PixelSize size;
};

/// Opens for reading once, from top to bottom; `option` is one more option of the loader.
template <typename... Option>
ImagePointer openImage(VipsSource* source, Option... option) {
  return ImagePointer(vips_image_new_from_source(source, "", "access", VIPS_ACCESS_SEQUENTIAL,
                                                 "fail_on", VIPS_FAIL_ON_ERROR, option...,
                                                 nullptr));
}

/// What the decoder of a format takes for each pixel when it holds the picture whole, as measured
/// (resident memory at 49 megapixels, rounded up); 0 when it reads row by row.
int heldBytesPerPixel(std::string_view format, VipsImage* image) {
  const int bytes = static_cast<int>(VIPS_IMAGE_SIZEOF_PEL(image));
  if (format == "HEIC") return 3 + 2 * bytes;
  if (format == "JPEG XL") return 12 + bytes;
  if (format == "WebP" || format == "GIF") return 8;
  if (vips_image_get_typeof(image, "jpeg-multiscan") != 0) return 2 * bytes;
  return vips_image_get_typeof(image, "interlaced") != 0 ? bytes + 1 : 0;
}

std::string_view formatOf(VipsSource* source) {
  const char* found = vips_foreign_find_load_source(source);
  const std::string_view loader = found ? found : "";
  for (const auto& [begin, name] : kFormats) {
    if (loader.starts_with(begin)) return name;
  }
  return {};
}

Error unknownFormat() { return Error{"it is not a picture of a known format"}; }

Result<Opened> readHeader(VipsSource* source) {
  const std::string_view format = formatOf(source);
  if (format.empty()) {
    vips_error_clear();
    return unknownFormat();
  }
  ImagePointer image = openImage(source);
  if (!image) return damagedPicture();
  const PixelSize size{vips_image_get_width(image.get()), vips_image_get_height(image.get())};
  const Status status =
      checkPictureLimits({.size = size,
                          .bytesPerPixel = static_cast<int>(VIPS_IMAGE_SIZEOF_PEL(image.get())),
                          .heldBytesPerPixel = heldBytesPerPixel(format, image.get())});
  if (!status) return status.error();
  return Opened{std::move(image), format, size};
}

/// Eighths of a JPEG's size are made in its decoder for nearly nothing; twice the size asked for
/// has to be left for the step that follows, which shrinks better.
int jpegShrink(int ratio) {
  for (const int factor : {8, 4, 2}) {
    if (ratio >= 2 * factor) return factor;
  }
  return 1;
}

/// WebP is averaged in its decoder before its colours are converted, by any ratio. Measured on a
/// photo of 24 megapixels against the exact filter: 51 dB when twice the size is left to be
/// filtered, 48 dB when half as much again is, 43 dB when nothing is; and a third of the time is
/// saved.
constexpr double kWebpLeft = 1.8;
constexpr int kWebpLeastRatio = 3;

/// The picture, opened again at a reduced size where its format can do that.
ImagePointer reopenSmaller(VipsSource* source, Opened opened, int longestSide) {
  const int longest = std::max(opened.size.width, opened.size.height);
  const int ratio = longest / longestSide;
  if (opened.format == "JPEG" && jpegShrink(ratio) > 1) {
    return openImage(source, "shrink", jpegShrink(ratio));
  }
  if (opened.format == "WebP" && ratio >= kWebpLeastRatio) {
    const int shortest = std::min(opened.size.width, opened.size.height);
    return openImage(source, "scale", std::max(kWebpLeft * longestSide / longest, 1.0 / shortest));
  }
  return std::move(opened.image);
}

std::string_view formatName(const Opened& opened) {
  const char* compression = nullptr;
  if (opened.format == "HEIC" &&
      vips_image_get_typeof(opened.image.get(), "heif-compression") != 0 &&
      vips_image_get_string(opened.image.get(), "heif-compression", &compression) == 0 &&
      std::string_view(compression) == "av1") {
    return "AVIF";
  }
  return opened.format;
}

PictureFacts factsOf(int descriptor, const Opened& opened) {
  // HEIC, AVIF and JPEG XL turn the picture themselves; an EXIF orientation beside is a leftover.
  const bool isTurned = opened.format == "HEIC" || opened.format == "JPEG XL";
  const int orientation = opened.format == "PNG" ? readPngHeader(descriptor).orientation
                                                 : vips_image_get_orientation(opened.image.get());
  return {.format = std::string(formatName(opened)),
          .storedSize = opened.size,
          .orientation = isTurned ? 1 : orientation};
}

/// The profile of the pixels of a file: `profile`, which libvips has found in it, unless its header
/// says something else in a way that libvips does not read.
std::string profileOfFile(int descriptor, std::string_view format, std::string profile) {
  if (format == "PNG") {
    const VideoColors colors = readPngHeader(descriptor).colors;  // goes before a profile
    return colors.transfer == 2 ? profile : profileOf(colors);
  }
  if (format == "JPEG XL") {
    // Its library makes a profile too, but an HDR one clips all highlights.
    const VideoColors colors = jxlColors(descriptor);
    if (colors.isHdr()) return profileOf(colors);
    return colors.isSrgb() ? std::string() : profile;
  }
  const bool isHeif = format == "HEIC" || format == "AVIF";
  return isHeif && profile.empty() ? profileOf(heifColors(descriptor)) : profile;
}

}  // namespace

Result<std::unique_ptr<RowReader>> openWithVips(int descriptor, int longestSide) {
  vips_error_clear();
  if (!hasPictureSignature(descriptor)) return unknownFormat();
  SourcePointer source(vips_source_new_from_descriptor(descriptor));
  if (!source) return damagedPicture();
  Result<Opened> opened = readHeader(source.get());
  if (!opened) return opened.error();
  PictureFacts facts = factsOf(descriptor, *opened);
  ImagePointer image = reopenSmaller(source.get(), std::move(*opened), std::max(longestSide, 1));
  if (!image) return damagedPicture();
  Result<PlainPixels> pixels = plainPixels(std::move(image));
  if (!pixels) return pixels.error();
  facts.profile = profileOfFile(descriptor, facts.format, std::move(pixels->profile));
  return std::unique_ptr<RowReader>(
      new VipsRows(std::move(source), std::move(*pixels), std::move(facts)));
}

}  // namespace pelmora::decoder
