#include "inspector/EmbeddedData.h"

#include <exiv2/exif.hpp>
#include <exiv2/iptc.hpp>
#include <exiv2/xmp_exiv2.hpp>

#include <algorithm>
#include <array>

namespace pelmora::inspector {

namespace {

using platform::metadata::contentTypeOfMime;

constexpr std::string_view kUtf8Escape = "\x1B%G";

template <typename Datum>
std::uint32_t idOfExif(const Datum& datum) {
  return static_cast<std::uint32_t>(datum.ifdId()) << 16 | datum.tag();
}

template <typename Datum>
std::uint32_t idOfIptc(const Datum& datum) {
  return static_cast<std::uint32_t>(datum.record()) << 16 | datum.tag();
}

EmbeddedKey::Family familyOf(std::string_view name) {
  if (name.starts_with("Exif.")) return EmbeddedKey::Family::exif;
  return name.starts_with("Iptc.") ? EmbeddedKey::Family::iptc : EmbeddedKey::Family::xmp;
}

std::uint32_t idOf(EmbeddedKey::Family family, const std::string& name) {
  switch (family) {
    case EmbeddedKey::Family::exif:
      return idOfExif(Exiv2::ExifKey(name));
    case EmbeddedKey::Family::iptc:
      return idOfIptc(Exiv2::IptcKey(name));
    case EmbeddedKey::Family::xmp:
      (void)Exiv2::XmpKey(name);
      return 0;
  }
  return 0;
}

/// What no attribute is read from, such as the hundreds of values of a camera's maker, is left out.
bool isWanted(std::uint32_t exifId) {
  static const std::array kGroups{EmbeddedKey("Exif.Image.Make").id >> 16,
                                  EmbeddedKey("Exif.Photo.Flash").id >> 16,
                                  EmbeddedKey("Exif.GPSInfo.GPSLatitude").id >> 16};
  return std::find(kGroups.begin(), kGroups.end(), exifId >> 16) != kGroups.end();
}

/// Sorted by their keys; those with the same one stay in their order.
template <typename All>
void sortByKey(All& all) {
  std::stable_sort(all.begin(), all.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
}

template <typename All, typename Key>
std::vector<const Exiv2::Value*> valuesOf(const All& all, const Key& key) {
  std::vector<const Exiv2::Value*> values;
  auto at = std::lower_bound(all.begin(), all.end(), key, [](const auto& each, const Key& wanted) {
    return each.first < wanted;
  });
  for (; at != all.end() && at->first == key; ++at) values.push_back(at->second);
  return values;
}

}  // namespace

EmbeddedKey::EmbeddedKey(std::string_view keyName)
    : name(keyName), family(familyOf(name)), id(idOf(family, name)) {}

EmbeddedData::EmbeddedData(const Exiv2::Image& image, std::string_view mime)
    : _image(image), _type(contentTypeOfMime(image.mimeType())) {
  if (!_type) _type = contentTypeOfMime(mime);
  collectExif();
  collectIptc();
  collectXmp();
}

void EmbeddedData::collectExif() {
  for (const Exiv2::Exifdatum& datum : _image.exifData()) {
    const std::uint32_t id = idOfExif(datum);
    if (datum.size() > 0 && isWanted(id)) _exif.emplace_back(id, &datum.value());
  }
  sortByKey(_exif);
}

void EmbeddedData::collectIptc() {
  for (const Exiv2::Iptcdatum& datum : _image.iptcData()) {
    if (datum.size() > 0) _iptc.emplace_back(idOfIptc(datum), &datum.value());
  }
  sortByKey(_iptc);
  static const EmbeddedKey kCharacterSet("Iptc.Envelope.CharacterSet");
  const auto sets = find(kCharacterSet);
  _isIptcUtf8 = !sets.empty() && sets.front()->toString() == kUtf8Escape;
}

void EmbeddedData::collectXmp() {
  for (const Exiv2::Xmpdatum& datum : _image.xmpData()) {
    if (datum.count() > 0) _xmp.emplace_back(datum.key(), &datum.value());
  }
  sortByKey(_xmp);
}

std::vector<const Exiv2::Value*> EmbeddedData::find(const EmbeddedKey& key) const {
  switch (key.family) {
    case EmbeddedKey::Family::exif:
      return valuesOf(_exif, key.id);
    case EmbeddedKey::Family::iptc:
      return valuesOf(_iptc, key.id);
    case EmbeddedKey::Family::xmp:
      return valuesOf(_xmp, key.name);
  }
  return {};
}

}  // namespace pelmora::inspector
