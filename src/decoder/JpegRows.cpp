#include "decoder/JpegRows.h"

#include "decoder/JpegDecompressor.h"
#include "decoder/PictureLimits.h"

#include <algorithm>

#include <unistd.h>

namespace pelmora::decoder {

namespace {

constexpr int kScaleDenominator = DCTSIZE;

/// How many times larger than asked for the picture is at least left to be filtered. The library
/// makes smaller by averaging, which lets fine patterns through as coarse ones: measured on
/// mosaics of photos against the exact filter, 38 dB are left at 1.2 times, 44 and more from here.
constexpr double kLeastReduction = 1.6;

/// The bytes of all coefficients, which a picture of several passes is held as, for each pixel.
int coefficientBytesPerPixel(const jpeg_decompress_struct& info) {
  const std::span components(info.comp_info, static_cast<std::size_t>(info.num_components));
  int samples = 0;  // in the area of the most coarsely sampled component's
  for (const jpeg_component_info& component : components) {
    samples += component.h_samp_factor * component.v_samp_factor;
  }
  const int area = info.max_h_samp_factor * info.max_v_samp_factor;
  return (samples * static_cast<int>(sizeof(JCOEF)) + area - 1) / area;
}

Status checkLimits(jpeg_decompress_struct& info) {
  return checkPictureLimits(
      {.size = {static_cast<int>(info.image_width), static_cast<int>(info.image_height)},
       .bytesPerPixel = info.num_components,
       .heldBytesPerPixel = jpeg_has_multiple_scans(&info) ? coefficientBytesPerPixel(info) : 0});
}

bool isReadHere(const jpeg_decompress_struct& info) {
  return info.jpeg_color_space == JCS_GRAYSCALE || info.jpeg_color_space == JCS_RGB ||
         info.jpeg_color_space == JCS_YCbCr;
}

void chooseScale(jpeg_decompress_struct& info, int longestSide) {
  const double longer = std::max(info.image_width, info.image_height);
  int eighths = 1;
  // Of the sizes between, the library makes each more slowly than the next power of two.
  while (eighths < kScaleDenominator &&
         longer * eighths / kScaleDenominator < kLeastReduction * longestSide) {
    eighths *= 2;
  }
  info.scale_num = static_cast<unsigned int>(eighths);
  info.scale_denom = kScaleDenominator;
}

class JpegRows final : public RowReader {
 public:
  explicit JpegRows(int descriptor) : _jpeg(descriptor) {}

  /// Up to the first row. False for a JPEG that is not read here.
  Result<bool> start(int longestSide);

  [[nodiscard]] const PictureFacts& facts() const override { return _facts; }
  [[nodiscard]] const RowFormat& format() const override { return _format; }

  [[nodiscard]] Status readRow(std::span<std::byte> row) override {
    auto* to = reinterpret_cast<JSAMPROW>(row.data());
    return _jpeg.run([this, &to] { jpeg_read_scanlines(&_jpeg.info(), &to, 1); });
  }

  [[nodiscard]] Status finish() override {
    return _jpeg.run([this] { jpeg_finish_decompress(&_jpeg.info()); });
  }

 private:
  JpegDecompressor _jpeg;
  PictureFacts _facts;
  RowFormat _format;
};

Result<bool> JpegRows::start(int longestSide) {
  jpeg_decompress_struct& info = _jpeg.info();
  if (Status status = _jpeg.run([&info] { jpeg_read_header(&info, TRUE); }); !status) {
    return status.error();
  }
  if (Status status = checkLimits(info); !status) return status.error();
  if (!isReadHere(info)) return false;
  const bool isGrey = info.jpeg_color_space == JCS_GRAYSCALE;
  info.out_color_space = isGrey ? JCS_GRAYSCALE : JCS_RGB;
  info.do_block_smoothing = FALSE;
  chooseScale(info, longestSide);
  if (Status status = _jpeg.run([&info] { jpeg_start_decompress(&info); }); !status) {
    return status.error();
  }
  _facts = {.format = "JPEG",
            .storedSize = {static_cast<int>(info.image_width), static_cast<int>(info.image_height)},
            .orientation = _jpeg.metadata().orientation(),
            .profile = _jpeg.metadata().profile()};
  _format = {.size = {static_cast<int>(info.output_width), static_cast<int>(info.output_height)},
             .model = isGrey ? ColorModel::grey : ColorModel::rgb,
             .reachX = double(info.image_width) * info.scale_num / info.scale_denom,
             .reachY = double(info.image_height) * info.scale_num / info.scale_denom,
             .averagedBox = static_cast<int>(info.scale_denom / info.scale_num)};
  return true;
}

}  // namespace

Result<std::unique_ptr<RowReader>> openJpeg(int descriptor, int longestSide) {
  auto rows = std::make_unique<JpegRows>(descriptor);
  const Result<bool> started = rows->start(longestSide);
  if (!started) return started.error();
  if (*started) return std::unique_ptr<RowReader>(std::move(rows));
  // As it was, for who reads it instead.
  if (lseek(descriptor, 0, SEEK_SET) != 0) return Error{"it cannot be read twice"};
  return std::unique_ptr<RowReader>();
}

}  // namespace pelmora::decoder
