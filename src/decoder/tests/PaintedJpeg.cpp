#include "decoder/tests/PaintedJpeg.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace pelmora::decoder {

namespace {

/// The passes of a usual progressive picture, and after them some that add nothing.
std::vector<jpeg_scan_info> scansOf(const JpegPaint& paint) {
  std::vector<jpeg_scan_info> scans;
  jpeg_scan_info all{};
  all.comps_in_scan = paint.channels;
  for (int i = 0; i < paint.channels; ++i) all.component_index[i] = i;
  scans.push_back(all);
  for (int component = 0; component < paint.channels; ++component) {
    jpeg_scan_info one{};
    one.comps_in_scan = 1;
    one.component_index[0] = component;
    one.Ss = 1;
    one.Se = 63;
    scans.push_back(one);
  }
  return scans;
}

/// Where the last pass begins, with the tables that belong to it.
std::string lastScanOf(const std::string& jpeg) {
  const std::size_t at = jpeg.rfind("\xff\xda");
  return jpeg.substr(at, jpeg.size() - 2 - at);
}

void addSegments(jpeg_compress_struct& info, const JpegPaint& paint) {
  const auto add = [&info](int marker, const std::string& text) {
    jpeg_write_marker(&info, marker, reinterpret_cast<const JOCTET*>(text.data()),
                      static_cast<unsigned int>(text.size()));
  };
  if (!paint.exif.empty()) add(JPEG_APP0 + 1, paint.exif);
  for (std::size_t i = 0; i < paint.profile.size(); ++i) {
    std::string piece("ICC_PROFILE\0", 12);
    piece += static_cast<char>(i + 1);
    piece += static_cast<char>(paint.profile.size());
    add(JPEG_APP0 + 2, piece + paint.profile[i]);
  }
}

void writeRows(jpeg_compress_struct& info, const JpegPaint& paint) {
  std::vector<JSAMPLE> row(static_cast<std::size_t>(paint.width * paint.channels));
  for (int y = 0; y < paint.height; ++y) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const int at = static_cast<int>(i);
      row[i] = paintedValue(paint, at / paint.channels, y, at % paint.channels);
    }
    JSAMPROW pointer = row.data();
    jpeg_write_scanlines(&info, &pointer, 1);
  }
}

}  // namespace

std::uint8_t paintedValue(const JpegPaint& paint, int x, int y, int channel) {
  const double across = 3.0 * x / paint.width;
  const double down = 3.0 * y / paint.height;
  return static_cast<std::uint8_t>(
      std::lround(127.5 + 100 * std::sin(across + channel) * std::cos(down * (channel + 1) / 2)));
}

std::string paintedJpeg(const JpegPaint& paint) {
  jpeg_compress_struct info{};
  jpeg_error_mgr errors{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* memory = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &memory, &size);
  info.image_width = static_cast<JDIMENSION>(paint.width);
  info.image_height = static_cast<JDIMENSION>(paint.height);
  info.input_components = paint.channels;
  info.in_color_space = paint.channels == 1   ? JCS_GRAYSCALE
                        : paint.channels == 3 ? JCS_RGB
                                              : JCS_CMYK;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, paint.quality, TRUE);
  if (paint.channels == 3) {
    info.comp_info[0].h_samp_factor = paint.acrossPerChroma;
    info.comp_info[0].v_samp_factor = paint.downPerChroma;
  }
  info.restart_interval = static_cast<unsigned int>(paint.restartInterval);
  info.arith_code = paint.isArithmetic ? TRUE : FALSE;
  const std::vector<jpeg_scan_info> scans = scansOf(paint);
  if (paint.isProgressive) {
    info.scan_info = scans.data();
    info.num_scans = static_cast<int>(scans.size());
  }
  jpeg_start_compress(&info, TRUE);
  addSegments(info, paint);
  writeRows(info, paint);
  jpeg_finish_compress(&info);
  std::string jpeg(reinterpret_cast<char*>(memory), size);
  jpeg_destroy_compress(&info);
  std::free(memory);
  const std::string last = lastScanOf(jpeg);
  for (int i = 0; i < paint.repeatedScans; ++i) jpeg.insert(jpeg.size() - 2, last);
  return jpeg;
}

std::string exifOf(int orientation) {
  std::string exif("Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0", 24);
  exif += static_cast<char>(orientation & 255);
  exif += static_cast<char>(orientation >> 8);
  exif.append(6, '\0');
  return exif;
}

}  // namespace pelmora::decoder
