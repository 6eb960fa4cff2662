#include "decoder/ExifOrientation.h"

#include <libexif/exif-data.h>

#include <memory>

namespace pelmora::decoder {

namespace {

struct ExifDeleter {
  void operator()(ExifData* data) const { exif_data_unref(data); }
};

// What a segment of a JPEG can hold; more is of no use to us.
constexpr std::size_t kLongestExif = 65536;

}  // namespace

int exifOrientation(std::span<const unsigned char> exif) {
  if (exif.empty() || exif.size() > kLongestExif) return 1;
  const std::unique_ptr<ExifData, ExifDeleter> data(exif_data_new());
  if (!data) return 1;
  // Nothing is to be repaired: an orientation that is made up would turn the picture.
  exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
  exif_data_load_data(data.get(), exif.data(), static_cast<unsigned int>(exif.size()));
  const ExifEntry* entry = exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
  if (!entry || entry->format != EXIF_FORMAT_SHORT || entry->size < 2) return 1;
  const int orientation = exif_get_short(entry->data, exif_data_get_byte_order(data.get()));
  return orientation >= 1 && orientation <= 8 ? orientation : 1;
}

}  // namespace pelmora::decoder
