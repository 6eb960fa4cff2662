#include "inspector/DerivedAttributes.h"

#include "inspector/EmbeddedDate.h"
#include "inspector/EmbeddedText.h"
#include "inspector/EmbeddedValue.h"
#include "platform/metadata/ContentTypes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string>

namespace pelmora::inspector {

namespace {

using platform::metadata::ContentType;
using platform::predicate::Constant;
using Values = std::vector<Constant>;

const Exiv2::Value* firstOf(const EmbeddedData& data, const EmbeddedKey& key) {
  const auto values = data.find(key);
  return values.empty() ? nullptr : values.front();
}

std::optional<std::int64_t> wholeOf(const EmbeddedData& data, const EmbeddedKey& key) {
  const Exiv2::Value* const value = firstOf(data, key);
  const auto number = value ? numberOf(*value) : std::nullopt;
  if (!number || std::abs(*number) > 1e9) return std::nullopt;
  return std::llround(*number);
}

std::string textOf(const EmbeddedData& data, const EmbeddedKey& key) {
  const Exiv2::Value* const value = firstOf(data, key);
  const auto texts = value ? textsOf(*value) : std::vector<std::string>();
  return texts.empty() ? std::string() : texts.front();
}

// What kind of picture
// -----------------------------------------------------------------------------

Values kind(const EmbeddedData& data) {
  const ContentType* const type = data.type();
  return type ? Values{std::string(type->kind)} : Values();
}

Values contentType(const EmbeddedData& data) {
  const ContentType* const type = data.type();
  return type ? Values{std::string(type->name)} : Values();
}

Values tree(const EmbeddedData& data) {
  Values values;
  const ContentType* const type = data.type();
  if (!type) return values;
  for (const std::string_view each : contentTypeTree(*type)) values.emplace_back(std::string(each));
  return values;
}

std::int64_t sideOf(const EmbeddedData& data, int read, const EmbeddedKey& told) {
  return read > 0 ? read : std::max<std::int64_t>(wholeOf(data, told).value_or(0), 0);
}

std::int64_t widthOf(const EmbeddedData& data) {
  static const EmbeddedKey kTold("Exif.Photo.PixelXDimension");
  return sideOf(data, data.image().pixelWidth(), kTold);
}

std::int64_t heightOf(const EmbeddedData& data) {
  static const EmbeddedKey kTold("Exif.Photo.PixelYDimension");
  return sideOf(data, data.image().pixelHeight(), kTold);
}

Values positive(std::int64_t value) { return value > 0 ? Values{value} : Values(); }
Values width(const EmbeddedData& data) { return positive(widthOf(data)); }
Values height(const EmbeddedData& data) { return positive(heightOf(data)); }
Values pixelCount(const EmbeddedData& data) { return positive(widthOf(data) * heightOf(data)); }

Values orientation(const EmbeddedData& data) {
  static const EmbeddedKey kKey("Exif.Image.Orientation");
  const auto value = wholeOf(data, kKey);
  if (!value || *value < 1 || *value > 8) return {};
  return {*value >= 5 ? 1 : 0};
}

Values colorSpace(const EmbeddedData& data) {
  static const EmbeddedKey kKey("Exif.Photo.ColorSpace");
  const auto value = wholeOf(data, kKey);
  if (value == 1) return {"sRGB"};
  if (value == 0xFFFF) return {"Uncalibrated"};
  return {};
}

Values flash(const EmbeddedData& data) {
  static const EmbeddedKey kKey("Exif.Photo.Flash");
  const auto value = wholeOf(data, kKey);
  return value ? Values{*value & 1} : Values();
}

Values comment(const EmbeddedData& data) {
  std::string text = textFromBytes(data.image().comment());
  return text.empty() ? Values() : Values{std::move(text)};
}

// Where ------------------------------------------------------------------------------------------

/// Degrees, minutes and seconds. `negative`: the sign of the other half of the globe.
Values degrees(const EmbeddedData& data, const EmbeddedKey& key, const EmbeddedKey& half,
               char negative, double most) {
  const Exiv2::Value* const value = firstOf(data, key);
  const auto whole = value ? numberOf(*value, 0) : std::nullopt;
  if (!whole) return {};
  const double minutes = numberOf(*value, 1).value_or(0);
  const double seconds = numberOf(*value, 2).value_or(0);
  const double angle = *whole + minutes / 60 + seconds / 3600;
  if (std::abs(angle) > most) return {};
  return {textOf(data, half).starts_with(negative) ? -angle : angle};
}

Values latitude(const EmbeddedData& data) {
  static const EmbeddedKey kKey("Exif.GPSInfo.GPSLatitude");
  static const EmbeddedKey kHalf("Exif.GPSInfo.GPSLatitudeRef");
  return degrees(data, kKey, kHalf, 'S', 90);
}

Values longitude(const EmbeddedData& data) {
  static const EmbeddedKey kKey("Exif.GPSInfo.GPSLongitude");
  static const EmbeddedKey kHalf("Exif.GPSInfo.GPSLongitudeRef");
  return degrees(data, kKey, kHalf, 'W', 180);
}

Values altitude(const EmbeddedData& data) {
  static const EmbeddedKey kKey("Exif.GPSInfo.GPSAltitude");
  static const EmbeddedKey kBelow("Exif.GPSInfo.GPSAltitudeRef");
  const Exiv2::Value* const value = firstOf(data, kKey);
  const auto metres = value ? numberOf(*value) : std::nullopt;
  if (!metres) return {};
  return {wholeOf(data, kBelow) == 1 ? -*metres : *metres};
}

// When -------------------------------------------------------------------------------------------

struct DateKeys {
  EmbeddedKey date;
  std::optional<EmbeddedKey> rest = {};  // the offset, or as IPTC has it, the time with its offset
};

Values creationDate(const EmbeddedData& data) {
  static const std::array kPairs{
      DateKeys{EmbeddedKey("Exif.Photo.DateTimeOriginal"),
               EmbeddedKey("Exif.Photo.OffsetTimeOriginal")},
      DateKeys{EmbeddedKey("Exif.Photo.DateTimeDigitized"),
               EmbeddedKey("Exif.Photo.OffsetTimeDigitized")},
      DateKeys{EmbeddedKey("Xmp.photoshop.DateCreated")},
      DateKeys{EmbeddedKey("Iptc.Application2.DateCreated"),
               EmbeddedKey("Iptc.Application2.TimeCreated")},
      DateKeys{EmbeddedKey("Xmp.xmp.CreateDate")},
      DateKeys{EmbeddedKey("Exif.Image.DateTime"), EmbeddedKey("Exif.Photo.OffsetTime")}};
  for (const DateKeys& keys : kPairs) {
    const std::string date = textOf(data, keys.date);
    if (date.empty()) continue;
    const std::string rest = keys.rest ? textOf(data, *keys.rest) : "";
    for (const std::string& text : {date + " " + rest, date}) {
      if (const auto time = dateFromText(text)) return {*time};
    }
  }
  return {};
}

struct Derived {
  std::string_view attribute;
  DerivedReader read;
};

constexpr std::array kDerived = {
    Derived{"kMDItemKind", kind},
    Derived{"kMDItemContentType", contentType},
    Derived{"kMDItemContentTypeTree", tree},
    Derived{"kMDItemComment", comment},
    Derived{"kMDItemLatitude", latitude},
    Derived{"kMDItemLongitude", longitude},
    Derived{"kMDItemAltitude", altitude},
    Derived{"kMDItemContentCreationDate", creationDate},
    Derived{"kMDItemFlashOnOff", flash},
    Derived{"kMDItemPixelWidth", width},
    Derived{"kMDItemPixelHeight", height},
    Derived{"kMDItemPixelCount", pixelCount},
    Derived{"kMDItemOrientation", orientation},
    Derived{"kMDItemColorSpace", colorSpace},
};

}  // namespace

DerivedReader derivedReaderOf(std::string_view attribute) {
  const auto found =
      std::find_if(kDerived.begin(), kDerived.end(),
                   [attribute](const Derived& each) { return each.attribute == attribute; });
  return found == kDerived.end() ? nullptr : found->read;
}

}  // namespace pelmora::inspector
