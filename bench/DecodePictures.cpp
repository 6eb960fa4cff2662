#include "DecodePictures.h"

#include "Canvas.h"

#include <lcms2.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace pelmora::bench {

namespace {

struct CanvasSize {
  const char* name;
  int width;
  int height;
};

constexpr CanvasSize kLargest{"48mp", 8000, 6000};
constexpr CanvasSize kMiddle{"24mp", 6000, 4000};
constexpr CanvasSize kSizes[] = {{"12mp", 4000, 3000}, kMiddle, kLargest};

VipsPointer crop(const VipsPointer& canvas, const CanvasSize& size) {
  VipsImage* part = nullptr;
  mustWork(vips_crop(canvas.get(), &part, 0, 0, size.width, size.height, nullptr));
  return VipsPointer(part);
}

std::string displayP3Profile() {
  const cmsCIExyY white{0.3127, 0.3290, 1};
  const cmsCIExyYTRIPLE primaries{{0.680, 0.320, 1}, {0.265, 0.690, 1}, {0.150, 0.060, 1}};
  const double curve[] = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
  cmsToneCurve* tone = cmsBuildParametricToneCurve(nullptr, 4, curve);
  cmsToneCurve* tones[] = {tone, tone, tone};
  cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, tones);
  cmsFreeToneCurve(tone);
  cmsMLU* text = cmsMLUalloc(nullptr, 1);
  cmsMLUsetASCII(text, "en", "US", "Display P3");
  cmsWriteTag(profile, cmsSigProfileDescriptionTag, text);
  cmsMLUfree(text);
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  std::string bytes(size, '\0');
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  return bytes;
}

/// Copies a JPEG, with a profile put behind its first segment: the same picture otherwise.
void copyWithProfile(const FilePath& from, const FilePath& to) {
  std::ifstream input(from.bytes(), std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(input), {}};
  const auto byteAt = [&bytes](std::size_t at) { return static_cast<unsigned char>(bytes[at]); };
  const std::size_t afterFirst = 4U + byteAt(4) * 256U + byteAt(5);
  std::string segment("ICC_PROFILE\0\1\1", 14);
  segment += displayP3Profile();
  const std::size_t length = segment.size() + 2;
  const char head[] = {'\xFF', '\xE2', static_cast<char>(length >> 8), static_cast<char>(length)};
  bytes.insert(afterFirst, std::string(head, sizeof head) + segment);
  std::ofstream(to.bytes(), std::ios::binary) << bytes;
}

void saveJpeg(const VipsPointer& picture, const FilePath& file, bool isProgressive) {
  mustWork(vips_jpegsave(picture.get(), file.c_str(), "Q", 90, "subsample_mode",
                         VIPS_FOREIGN_SUBSAMPLE_ON, "interlace", isProgressive ? 1 : 0, nullptr));
}

void makeJpegs(const VipsPointer& canvas, const FilePath& folder,
               std::vector<DecodePicture>& pictures) {
  for (const bool isProgressive : {false, true}) {
    for (const CanvasSize& size : kSizes) {
      const std::string name = std::string(isProgressive ? "progressive." : "jpeg.") + size.name;
      const FilePath plain = folder / (name + ".jpg");
      const FilePath withProfile = folder / (name + ".p3.jpg");
      saveJpeg(crop(canvas, size), plain, isProgressive);
      copyWithProfile(plain, withProfile);
      DecodePicture picture{.name = name,
                            .file = plain,
                            .isJpeg = true,
                            .isBaseline = !isProgressive,
                            .isForQt = size.width == kMiddle.width};
      pictures.push_back(picture);
      picture.name += ".p3";
      picture.file = withProfile;
      picture.hasProfile = true;
      picture.isForQt = false;
      pictures.push_back(picture);
    }
  }
}

void makeOthers(const VipsPointer& canvas, const FilePath& folder,
                std::vector<DecodePicture>& pictures) {
  const VipsPointer middle = crop(canvas, kMiddle);
  const auto add = [&](const std::string& format, const auto& save) {
    const FilePath file = folder / ("24mp." + format);
    if (save(file.c_str()) != 0) {
      std::printf("# left out: %s cannot be made here\n", format.c_str());
      vips_error_clear();
      return;
    }
    pictures.push_back({.name = format + ".24mp", .file = file, .isForQt = true});
  };
  VipsImage* in = middle.get();
  add("png", [in](const char* file) { return vips_pngsave(in, file, nullptr); });
  add("webp",
      [in](const char* file) { return vips_webpsave(in, file, "Q", 85, "effort", 2, nullptr); });
  add("tiff", [in](const char* file) {
    return vips_tiffsave(in, file, "compression", VIPS_FOREIGN_TIFF_COMPRESSION_DEFLATE,
                         "predictor", VIPS_FOREIGN_TIFF_PREDICTOR_HORIZONTAL, nullptr);
  });
  add("avif", [in](const char* file) {
    return vips_heifsave(in, file, "Q", 60, "compression", VIPS_FOREIGN_HEIF_COMPRESSION_AV1,
                         "effort", 0, nullptr);
  });
  add("jxl",
      [in](const char* file) { return vips_jxlsave(in, file, "Q", 90, "effort", 3, nullptr); });
}

}  // namespace

std::vector<DecodePicture> makeDecodePictures(const FilePath& folder) {
  const FilePath corpus = corpusFolder();
  std::printf("# making pictures to decode, of %s\n",
              corpus.empty() ? "a texture, as there is no corpus" : "the corpus's photographs");
  std::fflush(stdout);
  std::vector<DecodePicture> pictures;
  const VipsPointer canvas = makeCanvas(kLargest.width, kLargest.height);
  makeJpegs(canvas, folder, pictures);
  makeOthers(canvas, folder, pictures);
  const FilePath heic = corpus.empty() ? FilePath() : corpus / "iphone_p3.heic";
  if (!heic.empty() && std::filesystem::exists(heic.bytes())) {
    pictures.push_back({.name = "heic.phone", .file = heic, .hasProfile = true});
  } else {
    std::puts("# left out: HEIC, as there is no corpus");
  }
  return pictures;
}

FilePath makeSmallJpeg(const FilePath& folder) {
  const FilePath file = folder / "small.jpg";
  saveJpeg(makeCanvas(640, 480), file, false);
  return file;
}

}  // namespace pelmora::bench
