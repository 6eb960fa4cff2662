#include "PlainDecoders.h"

#include "VipsPointer.h"

#include <QImageReader>

#include <cstddef>
// Wants the types of <cstdio>.
#include <jpeglib.h>

#include <algorithm>
#include <vector>

namespace pelmora::bench {

namespace {

/// The least n for which n eighths of `side` are not below `wanted`.
unsigned eighthsFor(unsigned side, unsigned wanted) {
  unsigned eighths = 1;
  while (eighths < 8 && (side * eighths + 7) / 8 < wanted) ++eighths;
  return eighths;
}

}  // namespace

void decodeWithLibjpeg(const FilePath& file, int longestSide) {
  std::FILE* input = std::fopen(file.c_str(), "rb");
  if (!input) std::exit(1);
  jpeg_decompress_struct decoder{};
  jpeg_error_mgr errors{};
  decoder.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&decoder);
  jpeg_stdio_src(&decoder, input);
  jpeg_read_header(&decoder, TRUE);
  decoder.scale_num = eighthsFor(std::max(decoder.image_width, decoder.image_height),
                                 static_cast<unsigned>(longestSide));
  decoder.scale_denom = 8;
  decoder.out_color_space = JCS_RGB;
  jpeg_start_decompress(&decoder);
  const std::size_t rowBytes = std::size_t{3} * decoder.output_width;
  std::vector<JSAMPLE> pixels(rowBytes * decoder.output_height);
  while (decoder.output_scanline < decoder.output_height) {
    JSAMPROW row = pixels.data() + rowBytes * decoder.output_scanline;
    jpeg_read_scanlines(&decoder, &row, 1);
  }
  jpeg_finish_decompress(&decoder);
  jpeg_destroy_decompress(&decoder);
  std::fclose(input);
}

void decodeWithVips(const FilePath& file, int longestSide, bool hasProfile) {
  VipsImage* small = nullptr;
  mustWork(vips_thumbnail(file.c_str(), &small, longestSide, "height", longestSide, "size",
                          VIPS_SIZE_DOWN, hasProfile ? "export_profile" : nullptr, "srgb",
                          nullptr));
  const VipsPointer thumbnail(small);
  std::size_t size = 0;
  void* pixels = vips_image_write_to_memory(small, &size);
  mustWork(pixels ? 0 : 1);
  g_free(pixels);
}

bool decodeWithQt(const FilePath& file, int longestSide) {
  QImageReader reader(QString::fromStdString(file.bytes()));
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  if (!size.isValid()) return false;
  if (std::max(size.width(), size.height()) > longestSide) {
    reader.setScaledSize(size.scaled(longestSide, longestSide, Qt::KeepAspectRatio));
  }
  return !reader.read().isNull();
}

void prepareVips() {
  // It says on standard error, at every decoding, which parts of a file it passes over.
  g_log_set_handler(
      "VIPS", G_LOG_LEVEL_WARNING, [](const char*, GLogLevelFlags, const char*, void*) {}, nullptr);
  vips_cache_set_max(0);
  vips_concurrency_set(1);
}

}  // namespace pelmora::bench
