#include "inspector/tests/PaintedFile.h"

#include <libheif/heif.h>
#include <sys/mman.h>
#include <unistd.h>
#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>
#include <string>

namespace pelmora::inspector {

namespace {

// One pixel in files of formats that Exiv2 does not make itself.
constexpr std::array<std::uint8_t, 38> kTiff{'I', 'I', '*', 0, 8, 0, 0, 0, 2, 0, 0, 1, 3,
                                             0,   1,   0,   0, 0, 1, 0, 0, 0, 1, 1, 3, 0,
                                             1,   0,   0,   0, 1, 0, 0, 0, 0, 0, 0, 0};
constexpr std::array<std::uint8_t, 34> kWebp{
    'R', 'I', 'F', 'F', 26, 0, 0, 0,  'W', 'E', 'B', 'P', 'V',  'P',  '8',  'L', 13,
    0,   0,   0,   47,  0,  0, 0, 16, 7,   16,  17,  17,  0x88, 0x88, 0xFE, 7,   0};

/// `copy` outlives it: Exiv2 writes into what it was given.
auto emptyImage(Format format, Bytes& copy) {
  switch (format) {
    case Format::jpeg:
      return Exiv2::ImageFactory::create(Exiv2::ImageType::jpeg);
    case Format::png:
      return Exiv2::ImageFactory::create(Exiv2::ImageType::png);
    case Format::tiff:
      copy.assign(kTiff.begin(), kTiff.end());
      break;
    case Format::webp:
      copy.assign(kWebp.begin(), kWebp.end());
      break;
  }
  return Exiv2::ImageFactory::open(copy.data(), static_cast<long>(copy.size()));
}

void require(const heif_error& error) {
  if (error.code != heif_error_Ok) throw std::runtime_error(error.message);
}

heif_error append(heif_context*, const void* data, std::size_t size, void* bytes) {
  const auto* const begin = static_cast<const std::uint8_t*>(data);
  static_cast<Bytes*>(bytes)->insert(static_cast<Bytes*>(bytes)->end(), begin, begin + size);
  return {heif_error_Ok, heif_suberror_Unspecified, ""};
}

template <typename T>
auto owned(T* pointer, void (*release)(T*)) {
  return std::unique_ptr<T, void (*)(T*)>(pointer, release);
}

}  // namespace

Bytes painted(Format format, const std::function<void(Exiv2::Image&)>& fill) {
  Bytes copy;
  const auto image = emptyImage(format, copy);
  image->readMetadata();
  fill(*image);
  image->writeMetadata();
  Exiv2::BasicIo& io = image->io();
  io.open();
  io.seek(0, Exiv2::BasicIo::beg);
  Bytes bytes(static_cast<std::size_t>(io.size()));
  io.read(bytes.data(), static_cast<long>(bytes.size()));
  return bytes;
}

Bytes paintedHeic(const Exiv2::ExifData& exif) {
  constexpr int kSide = 64;
  heif_image* image = nullptr;
  require(
      heif_image_create(kSide, kSide, heif_colorspace_RGB, heif_chroma_interleaved_RGB, &image));
  const auto ownedImage = owned<const heif_image>(image, heif_image_release);
  require(heif_image_add_plane(image, heif_channel_interleaved, kSide, kSide, 8));
  int stride = 0;
  std::uint8_t* const rows = heif_image_get_plane(image, heif_channel_interleaved, &stride);
  std::fill_n(rows, stride * kSide, std::uint8_t{128});  // the same bytes every time
  const auto context = owned(heif_context_alloc(), heif_context_free);
  heif_encoder* encoder = nullptr;
  require(heif_context_get_encoder_for_format(context.get(), heif_compression_HEVC, &encoder));
  const auto ownedEncoder = owned(encoder, heif_encoder_release);
  heif_image_handle* handle = nullptr;
  require(heif_context_encode_image(context.get(), image, encoder, nullptr, &handle));
  const auto ownedHandle = owned<const heif_image_handle>(handle, heif_image_handle_release);
  Exiv2::Blob blob;
  Exiv2::ExifParser::encode(blob, Exiv2::littleEndian, exif);
  require(heif_context_add_exif_metadata(context.get(), handle, blob.data(),
                                         static_cast<int>(blob.size())));
  Bytes bytes;
  heif_writer writer{1, append};
  require(heif_context_write(context.get(), &writer, &bytes));
  return bytes;
}

void fillWithEverything(Exiv2::Image& image) {
  Exiv2::ExifData& exif = image.exifData();
  exif["Exif.Image.Make"] = "Maker";
  exif["Exif.Image.Orientation"] = std::uint16_t{6};
  exif["Exif.Photo.DateTimeOriginal"] = "2021:05:06 07:08:09";
  exif["Exif.Photo.OffsetTimeOriginal"] = "+02:00";
  exif["Exif.Photo.FNumber"] = Exiv2::URational(28, 10);
  exif["Exif.Photo.UserComment"] = "charset=Ascii A comment";
  exif["Exif.GPSInfo.GPSLatitude"] = "51/1 30/1 0/1";
  exif["Exif.GPSInfo.GPSLatitudeRef"] = "N";
  exif["Exif.GPSInfo.GPSLongitude"] = "7/1 30/1 36/1";
  exif["Exif.GPSInfo.GPSLongitudeRef"] = "W";
  if (image.checkMode(Exiv2::mdIptc) == Exiv2::amReadWrite) {
    Exiv2::IptcData& iptc = image.iptcData();
    iptc["Iptc.Application2.City"] = "M\xFCnster";
    iptc["Iptc.Application2.Keywords"] = "bridge";
  }
  Exiv2::XmpData& xmp = image.xmpData();
  xmp["Xmp.dc.title"] = "A title";
  xmp["Xmp.dc.subject"] = "lake";
  xmp["Xmp.dc.subject"] = "mountain";
  xmp["Xmp.xmp.Rating"] = "4";
}

platform::FileDescriptor fileOf(const Bytes& bytes) {
  platform::FileDescriptor file(memfd_create("file", MFD_CLOEXEC));
  const auto size = static_cast<ssize_t>(bytes.size());
  if (write(file.get(), bytes.data(), bytes.size()) != size) throw std::runtime_error("write");
  lseek(file.get(), 0, SEEK_SET);
  return file;
}

}  // namespace pelmora::inspector
