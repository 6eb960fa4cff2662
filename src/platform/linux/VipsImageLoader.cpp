#include "platform/linux/VipsImageLoader.h"

#include "platform/FileDescriptor.h"
#include "platform/linux/PictureLimits.h"

#include <vips/vips.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string_view>

namespace pelmora::platform {

namespace {

struct ObjectDeleter {
  void operator()(void* object) const { g_object_unref(object); }
};
using SourcePointer = std::unique_ptr<VipsSource, ObjectDeleter>;
using ImagePointer = std::unique_ptr<VipsImage, ObjectDeleter>;

/// The library keeps buffers for each thread that uses it, and our threads come and go.
struct ThreadBuffers {
  ~ThreadBuffers() { vips_thread_shutdown(); }
};

/// The readers that are used, as their class names begin.
constexpr std::array kReaders{"VipsForeignLoadJpeg", "VipsForeignLoadPng",   "VipsForeignLoadWebp",
                              "VipsForeignLoadTiff", "VipsForeignLoadNsgif", "VipsForeignLoadHeif",
                              "VipsForeignLoadJxl"};

void ignoreWarning(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

bool startVips() {
  if (vips_init("pelmora") != 0) return false;
  // No picture is decoded twice, and one at a time is enough for a saver.
  vips_cache_set_max(0);
  vips_concurrency_set(1);
  vips_operation_block_set("VipsForeignLoad", TRUE);
  for (const char* reader : kReaders) vips_operation_block_set(reader, FALSE);
  // Its warnings about odd but readable files go to standard error, several lines a file.
  g_log_set_handler("VIPS", G_LOG_LEVEL_WARNING, ignoreWarning, nullptr);
  return true;
}

bool vipsIsStarted() {
  static const bool started = startVips();
  return started;
}

/// What the library last said, its first line, after words that stand without it.
Error damaged() {
  char* said = vips_error_buffer_copy();
  std::string_view reason(said);
  reason = reason.substr(0, reason.find('\n'));
  Error error{"it is damaged"};
  if (!reason.empty()) error.message += " (" + std::string(reason) + ")";
  g_free(said);
  return error;
}

Result<SourcePointer> openSource(const FilePath& file) {
  // Without O_NONBLOCK, opening a named pipe would wait for its writer.
  const FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (!descriptor.isOpen()) return Error{std::string("it cannot be opened: ") + strerror(errno)};
  struct stat facts {};
  if (fstat(descriptor.get(), &facts) != 0) return Error{"it cannot be examined"};
  if (!S_ISREG(facts.st_mode)) return Error{"it is not a file"};
  if (facts.st_size == 0) return Error{"it is empty"};
  SourcePointer source(vips_source_new_from_descriptor(descriptor.get()));
  if (!source) return damaged();
  return source;
}

/// What the decoder of a format takes for each pixel when it holds the picture whole, as measured
/// (resident memory at 49 megapixels, rounded up); 0 when it reads row by row.
int heldBytesPerPixel(std::string_view loader, VipsImage* image) {
  const auto is = [loader](std::string_view format) { return loader.find(format) != loader.npos; };
  const int bytes = static_cast<int>(VIPS_IMAGE_SIZEOF_PEL(image));
  if (is("Heif")) return 3 + 2 * bytes;
  if (is("Jxl")) return 12 + bytes;
  if (is("Webp") || is("Nsgif")) return 8;
  if (vips_image_get_typeof(image, "jpeg-multiscan") != 0) return 2 * bytes;
  return vips_image_get_typeof(image, "interlaced") != 0 ? bytes + 1 : 0;
}

/// A picture whose header is read and whose pixels are not.
struct Opened {
  ImagePointer image;
  std::string loader;
  PictureHeader header;
};

/// Opens for reading once, from top to bottom; `option` is one more option of the loader.
template <typename... Option>
ImagePointer openImage(VipsSource* source, Option... option) {
  return ImagePointer(vips_image_new_from_source(source, "", "access", VIPS_ACCESS_SEQUENTIAL,
                                                 "fail_on", VIPS_FAIL_ON_ERROR, option...,
                                                 nullptr));
}

Result<Opened> readHeader(VipsSource* source) {
  const char* found = vips_foreign_find_load_source(source);
  const std::string loader = found ? found : "";
  const bool isUsed = std::any_of(kReaders.begin(), kReaders.end(), [&](std::string_view reader) {
    return loader.starts_with(reader);
  });
  if (!isUsed) {
    vips_error_clear();
    return Error{"it is not a picture of a known format"};
  }
  ImagePointer image = openImage(source);
  if (!image) return damaged();
  const PictureHeader header{
      .size = {vips_image_get_width(image.get()), vips_image_get_height(image.get())},
      .bytesPerPixel = static_cast<int>(VIPS_IMAGE_SIZEOF_PEL(image.get())),
      .heldBytesPerPixel = heldBytesPerPixel(loader, image.get())};
  return Opened{std::move(image), loader, header};
}

/// The size that the picture has when it stands upright.
Size uprightSize(const Opened& opened) {
  const auto& [width, height] = opened.header.size;
  const bool turned = vips_image_get_orientation(opened.image.get()) >= 5;
  return turned ? Size{double(height), double(width)} : Size{double(width), double(height)};
}

/// How much smaller the format's own decoder should make the picture: as far as leaves at least
/// twice the size asked for, since decoders shrink less well than the step that follows.
int shrinkOnLoad(const PixelSize& size, int longestSide) {
  const int ratio = std::max(size.width, size.height) / longestSide;
  if (ratio >= 16) return 8;
  if (ratio >= 8) return 4;
  return ratio >= 4 ? 2 : 1;
}

/// The picture, opened again at a reduced size where its format can do that.
ImagePointer reopenSmaller(VipsSource* source, Opened opened, int longestSide) {
  const int factor = shrinkOnLoad(opened.header.size, longestSide);
  const std::string_view loader = opened.loader;
  if (factor > 1 && loader.find("Jpeg") != loader.npos) return openImage(source, "shrink", factor);
  if (factor > 1 && loader.find("Webp") != loader.npos) {
    return openImage(source, "scale", 1.0 / factor);
  }
  return std::move(opened.image);
}

/// The picture without a profile that cannot be used: it would fail the conversion, or skew it.
ImagePointer withoutUselessProfile(ImagePointer image) {
  const void* profile = nullptr;
  std::size_t size = 0;
  if (vips_image_get_typeof(image.get(), VIPS_META_ICC_NAME) == 0 ||
      (vips_image_get_blob(image.get(), VIPS_META_ICC_NAME, &profile, &size) == 0 &&
       vips_icc_is_compatible_profile(image.get(), profile, size))) {
    return image;
  }
  VipsImage* copy = nullptr;
  if (vips_copy(image.get(), &copy, nullptr) != 0) return nullptr;
  vips_image_remove(copy, VIPS_META_ICC_NAME);
  return ImagePointer(copy);
}

/// Upright, no larger than asked, and in the colours of sRGB if it has a profile. Without one the
/// library would convert "from" a colour space that it only guesses, which shifts every colour.
ImagePointer thumbnail(VipsImage* image, int longestSide) {
  VipsImage* small = nullptr;
  const bool hasProfile = vips_image_get_typeof(image, VIPS_META_ICC_NAME) != 0;
  // The height must be given, or the width alone is bounded.
  const int failed =
      hasProfile ? vips_thumbnail_image(image, &small, longestSide, "height", longestSide, "size",
                                        VIPS_SIZE_DOWN, "export_profile", "srgb", nullptr)
                 : vips_thumbnail_image(image, &small, longestSide, "height", longestSide, "size",
                                        VIPS_SIZE_DOWN, nullptr);
  return failed ? nullptr : ImagePointer(small);
}

/// Three or four bands of eight bits in sRGB, whatever the picture was made of.
ImagePointer toSrgb(ImagePointer image) {
  VipsImage* converted = nullptr;
  if (!image || vips_colourspace(image.get(), &converted, VIPS_INTERPRETATION_sRGB, nullptr) != 0) {
    return nullptr;
  }
  image.reset(converted);
  if (vips_image_get_bands(image.get()) > 4) {
    if (vips_extract_band(image.get(), &converted, 0, "n", 4, nullptr) != 0) return nullptr;
    image.reset(converted);
  }
  if (vips_cast_uchar(image.get(), &converted, nullptr) != 0) return nullptr;
  return ImagePointer(converted);
}

std::uint8_t multiplied(std::uint8_t channel, std::uint8_t alpha) {
  return static_cast<std::uint8_t>((channel * alpha + 127) / 255);
}

/// Red green blue (alpha) becomes premultiplied blue green red alpha.
std::shared_ptr<const Pixels> pack(const PixelSize& size, int bands, const std::uint8_t* from) {
  const std::size_t count = std::size_t(size.width) * std::size_t(size.height);
  auto pixels = std::make_shared<Pixels>(Pixels{size, true, std::vector<std::uint8_t>(count * 4)});
  std::uint8_t* to = pixels->bytes.data();
  for (std::size_t i = 0; i < count; ++i, from += bands, to += 4) {
    const std::uint8_t alpha = bands == 4 ? from[3] : 255;
    if (alpha != 255) pixels->opaque = false;
    to[0] = multiplied(from[2], alpha);
    to[1] = multiplied(from[1], alpha);
    to[2] = multiplied(from[0], alpha);
    to[3] = alpha;
  }
  return pixels;
}

Result<std::shared_ptr<const Pixels>> decode(ImagePointer opened, int longestSide) {
  if (opened) opened = withoutUselessProfile(std::move(opened));
  if (!opened) return damaged();
  const ImagePointer image = toSrgb(thumbnail(opened.get(), longestSide));
  if (!image) return damaged();
  const int bands = vips_image_get_bands(image.get());
  if (bands < 3) return Error{"its colours are of no known kind"};
  std::size_t size = 0;
  const std::unique_ptr<void, decltype(&g_free)> memory(
      vips_image_write_to_memory(image.get(), &size), &g_free);
  if (!memory) return damaged();
  const PixelSize pixelSize{vips_image_get_width(image.get()), vips_image_get_height(image.get())};
  return pack(pixelSize, bands, static_cast<const std::uint8_t*>(memory.get()));
}

}  // namespace

VipsImageLoader::VipsImageLoader() { vipsIsStarted(); }

Result<Image> VipsImageLoader::load(const FilePath& file, int longestSide) {
  if (!vipsIsStarted()) return Error{"the picture library cannot be started"};
  vips_error_clear();
  const ThreadBuffers buffers;
  Result<SourcePointer> source = openSource(file);
  if (!source) return source.error();
  Result<Opened> opened = readHeader(source->get());
  if (!opened) return opened.error();
  if (const Status status = checkPictureLimits(opened->header); !status) return status.error();
  const Size size = uprightSize(*opened);
  longestSide = std::max(longestSide, 1);
  auto pixels = decode(reopenSmaller(source->get(), std::move(*opened), longestSide), longestSide);
  if (!pixels) return pixels.error();
  return Image{size, std::move(*pixels)};
}

}  // namespace pelmora::platform
