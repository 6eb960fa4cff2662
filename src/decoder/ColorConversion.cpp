#include "decoder/ColorConversion.h"

#include "decoder/MatrixShaper.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace pelmora::decoder {

namespace {

/// A picture's colours as they go in: what a way of converting is made for.
struct Colors {
  ColorModel model = ColorModel::rgb;
  bool hasAlpha = false;
  int bytesPerChannel = 1;
  std::string profile;
  bool operator==(const Colors&) const = default;
};

/// How to convert them. Of the steps that are set the first is done; with none set the values are
/// those of sRGB already (or, of inks, are taken for what is left of the light).
struct Way {
  bool isGreyAsRgb = false;  // before all else
  std::unique_ptr<MatrixShaper> shaper;
  TransformPointer transform;
};

constexpr cmsUInt32Number kIntent = INTENT_RELATIVE_COLORIMETRIC;
/// What two ways of converting may differ by to count as the same.
constexpr int kRounding = 1;

cmsUInt32Number lcmsFormat(ColorModel model, bool hasAlpha, int bytesPerChannel) {
  const auto bytes = static_cast<cmsUInt32Number>(bytesPerChannel);
  const cmsUInt32Number rest = BYTES_SH(bytes) | EXTRA_SH(hasAlpha ? 1U : 0U);
  switch (model) {
    case ColorModel::grey:
      return COLORSPACE_SH(PT_GRAY) | CHANNELS_SH(1) | rest;
    case ColorModel::rgb:
      return COLORSPACE_SH(PT_RGB) | CHANNELS_SH(3) | rest;
    case ColorModel::cmyk:
      return COLORSPACE_SH(PT_CMYK) | CHANNELS_SH(4) | rest;
  }
  return 0;
}

TransformPointer makeTransform(cmsContext context, cmsHPROFILE profile, const Colors& colors,
                               cmsUInt32Number flags) {
  const ProfilePointer srgb(cmsCreate_sRGBProfileTHR(context));
  if (!srgb) return nullptr;
  if (colors.hasAlpha) flags |= cmsFLAGS_COPY_ALPHA;
  return TransformPointer(cmsCreateTransformTHR(
      context, profile, lcmsFormat(colors.model, colors.hasAlpha, colors.bytesPerChannel),
      srgb.get(), lcmsFormat(ColorModel::rgb, colors.hasAlpha, 1), kIntent, flags));
}

/// RGB in steps over all colours, and every grey.
std::vector<std::uint8_t> probes() {
  constexpr int kStep = 51;
  std::vector<std::uint8_t> colors;
  const auto add = [&colors](int red, int green, int blue) {
    for (const int value : {red, green, blue}) colors.push_back(static_cast<std::uint8_t>(value));
  };
  for (int red = 0; red <= 255; red += kStep) {
    for (int green = 0; green <= 255; green += kStep) {
      for (int blue = 0; blue <= 255; blue += kStep) add(red, green, blue);
    }
  }
  for (int grey = 0; grey <= 255; ++grey) add(grey, grey, grey);
  return colors;
}

bool areClose(std::span<const std::uint8_t> a, std::span<const std::uint8_t> b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](int x, int y) { return std::abs(x - y) <= kRounding; });
}

/// The way for RGB. The tables are taken only where they agree with the library, which they are
/// compared with: whatever a strange profile does, it does the same as everywhere else.
Way wayOfRgb(cmsContext context, cmsHPROFILE profile, const Colors& colors) {
  const Colors bytes{.model = ColorModel::rgb, .profile = {}};
  const TransformPointer exact = makeTransform(context, profile, bytes, cmsFLAGS_NOOPTIMIZE);
  if (!exact) return {};
  const std::vector<std::uint8_t> from = probes();
  std::vector<std::uint8_t> to(from.size());
  cmsDoTransform(exact.get(), from.data(), to.data(),
                 static_cast<cmsUInt32Number>(from.size() / 3));
  if (areClose(from, to)) return {};
  Way way;
  if (colors.bytesPerChannel == 1 && !colors.hasAlpha) {
    way.shaper = MatrixShaper::make(profile);
    std::vector<std::uint8_t> byTables(from.size());
    if (way.shaper) way.shaper->convert(from, byTables);
    if (!areClose(to, byTables)) way.shaper = nullptr;
  }
  if (!way.shaper) way.transform = makeTransform(context, profile, colors, 0);
  return way;
}

/// A channel's value as 8 bits.
std::uint8_t byteOf(std::uint8_t value) { return value; }
std::uint8_t byteOf(std::uint16_t value) {
  return static_cast<std::uint8_t>((value + 128U) / 257U);
}

std::uint8_t lightLeft(int ink, int black) {
  return static_cast<std::uint8_t>(((255 - ink) * (255 - black) + 127) / 255);
}

/// Without any profile: grey three times, inks by what they leave of the light.
template <typename Sample>
void convertPlainly(const RowFormat& format, const Sample* from, std::span<std::byte> out) {
  const int channels = format.channels();
  auto* to = reinterpret_cast<std::uint8_t*>(out.data());
  const std::uint8_t* const end = to + out.size();
  for (; to != end; from += channels) {
    for (int i = 0; i < 3; ++i) {
      const std::uint8_t value = byteOf(from[format.model == ColorModel::grey ? 0 : i]);
      *to++ = format.model == ColorModel::cmyk ? lightLeft(value, byteOf(from[3])) : value;
    }
    if (format.hasAlpha) *to++ = byteOf(from[channels - 1]);
  }
}

/// Colours of 16 bits with the multiplied alpha divided out, in place.
void divideByAlpha(Raster& picture) {
  const int channels = picture.format.channels();
  auto* pixel = reinterpret_cast<std::uint16_t*>(picture.bytes.data());
  const std::uint16_t* const end = pixel + picture.bytes.size() / sizeof(*pixel);
  for (; pixel != end; pixel += channels) {
    const std::uint32_t alpha = pixel[channels - 1];
    if (alpha == 0 || alpha == 65535) continue;
    for (int i = 0; i < channels - 1; ++i) {
      // What is brighter than its alpha was thrown there by the filter.
      const std::uint32_t color = std::min<std::uint32_t>(pixel[i], alpha);
      pixel[i] = static_cast<std::uint16_t>((color * 65535U + alpha / 2) / alpha);
    }
  }
  picture.premultiplied = false;
}

template <typename Sample>
void spreadGrey(const RowFormat& format, const Sample* from, Sample* to) {
  const std::size_t pixels = format.samplesPerRow() * static_cast<std::size_t>(format.size.height) /
                             static_cast<std::size_t>(format.channels());
  for (std::size_t i = 0; i < pixels; ++i) {
    to = std::fill_n(to, 3, *from++);
    if (format.hasAlpha) *to++ = *from++;
  }
}

Raster emptyRaster(const PixelSize& size, bool hasAlpha, int bytesPerChannel) {
  Raster raster;
  raster.format = {.size = size, .hasAlpha = hasAlpha, .bytesPerChannel = bytesPerChannel};
  raster.bytes.resize(raster.format.bytesPerRow() * static_cast<std::size_t>(size.height));
  return raster;
}

Raster greyAsRgb(const Raster& grey) {
  const RowFormat& format = grey.format;
  Raster rgb = emptyRaster(format.size, format.hasAlpha, format.bytesPerChannel);
  if (format.bytesPerChannel == 1) {
    spreadGrey(format, reinterpret_cast<const std::uint8_t*>(grey.bytes.data()),
               reinterpret_cast<std::uint8_t*>(rgb.bytes.data()));
  } else {
    spreadGrey(format, reinterpret_cast<const std::uint16_t*>(grey.bytes.data()),
               reinterpret_cast<std::uint16_t*>(rgb.bytes.data()));
  }
  return rgb;
}

}  // namespace

struct ColorConversion::State {
  const Way& wayFor(Colors newColors);
  Way makeWay(Colors newColors);

  std::string cmykFallback;
  ColorContext context = makeColorContext();
  Colors colors;  // what `way` is for
  Way way;
};

const Way& ColorConversion::State::wayFor(Colors newColors) {
  if (!(colors == newColors)) {
    way = makeWay(newColors);
    colors = std::move(newColors);
  }
  return way;
}

Way ColorConversion::State::makeWay(Colors newColors) {
  const ColorModel model = newColors.model;
  ProfilePointer profile = openProfile(context.get(), newColors.profile);
  if (profile && !fits(profile.get(), model)) profile.reset();
  if (!profile && model == ColorModel::cmyk) {
    profile = openProfile(context.get(), cmykFallback);
    if (profile && !fits(profile.get(), model)) profile.reset();
  }
  if (!profile) return {};
  const bool isOfRgb = cmsGetColorSpace(profile.get()) == cmsSigRgbData;
  if (!isOfRgb) {
    Way found;
    found.transform = makeTransform(context.get(), profile.get(), newColors, 0);
    return found;
  }
  newColors.model = ColorModel::rgb;
  Way found = wayOfRgb(context.get(), profile.get(), newColors);
  found.isGreyAsRgb = model == ColorModel::grey;
  return found;
}

ColorConversion::ColorConversion(std::string cmykFallback) : _state(std::make_unique<State>()) {
  _state->cmykFallback = std::move(cmykFallback);
}

ColorConversion::~ColorConversion() = default;

Result<Raster> ColorConversion::toSrgb(Raster picture, const std::string& profile) {
  if (picture.premultiplied && picture.format.hasAlpha) divideByAlpha(picture);
  const Way& way = _state->wayFor({.model = picture.format.model,
                                   .hasAlpha = picture.format.hasAlpha,
                                   .bytesPerChannel = picture.format.bytesPerChannel,
                                   .profile = profile});
  if (way.isGreyAsRgb) picture = greyAsRgb(picture);
  const RowFormat& format = picture.format;
  if (way.shaper) {
    const std::span bytes(reinterpret_cast<std::uint8_t*>(picture.bytes.data()),
                          picture.bytes.size());
    way.shaper->convert(bytes, bytes);
    return picture;
  }
  const bool isByteRgb = format.model == ColorModel::rgb && format.bytesPerChannel == 1;
  if (isByteRgb && !way.transform) return picture;
  Raster result = emptyRaster(format.size, format.hasAlpha, 1);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(picture.bytes.data());
  if (way.transform) {
    cmsDoTransform(way.transform.get(), bytes, result.bytes.data(),
                   static_cast<cmsUInt32Number>(format.size.width) *
                       static_cast<cmsUInt32Number>(format.size.height));
  } else if (format.bytesPerChannel == 1) {
    convertPlainly(format, bytes, result.bytes);
  } else {
    convertPlainly(format, reinterpret_cast<const std::uint16_t*>(bytes), result.bytes);
  }
  return result;
}

}  // namespace pelmora::decoder
