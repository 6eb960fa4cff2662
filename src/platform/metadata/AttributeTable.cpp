#include "platform/metadata/AttributeTable.h"

#include <algorithm>
#include <array>

namespace pelmora::platform::metadata {

namespace {

constexpr bool kSeveral = true;
constexpr bool kOne = false;

constexpr std::array kTable = {
    // The file itself.
    Attribute{"kMDItemFSName", ValueType::text, kOne, Origin::file, "(name)"},
    Attribute{"kMDItemDisplayName", ValueType::text, kOne, Origin::file, "(name)"},
    Attribute{"kMDItemPath", ValueType::text, kOne, Origin::file, "(path)"},
    Attribute{"kMDItemFSSize", ValueType::integer, kOne, Origin::file, "(bytes)"},
    Attribute{"kMDItemFSCreationDate", ValueType::date, kOne, Origin::file, "(birth)"},
    Attribute{"kMDItemFSContentChangeDate", ValueType::date, kOne, Origin::file, "(modification)"},
    Attribute{"kMDItemContentModificationDate", ValueType::date, kOne, Origin::file,
              "(modification)"},
    Attribute{"kMDItemUserTags", ValueType::text, kSeveral, Origin::both,
              "(extended attributes) Xmp.digiKam.TagsList (of each its last part) Xmp.dc.subject "
              "Xmp.digiKam.ColorLabel (as a name)"},
    Attribute{"kMDItemFinderComment", ValueType::text, kOne, Origin::file, "(user.xdg.comment)"},
    Attribute{"kMDItemKind", ValueType::text, kOne, Origin::both, "(format)"},
    Attribute{"kMDItemContentType", ValueType::text, kOne, Origin::both, "(format)"},
    Attribute{"kMDItemContentTypeTree", ValueType::text, kSeveral, Origin::both, "(format)"},
    // What it shows, and who made it.
    Attribute{"kMDItemTitle", ValueType::text, kOne, Origin::embedded,
              "Xmp.dc.title Iptc.Application2.ObjectName Exif.Image.XPTitle"},
    Attribute{"kMDItemHeadline", ValueType::text, kOne, Origin::embedded,
              "Xmp.photoshop.Headline Iptc.Application2.Headline"},
    Attribute{"kMDItemDescription", ValueType::text, kOne, Origin::embedded,
              "Xmp.dc.description Iptc.Application2.Caption Exif.Image.ImageDescription"},
    Attribute{"kMDItemComment", ValueType::text, kOne, Origin::embedded,
              "Exif.Photo.UserComment Exif.Image.XPComment Xmp.exif.UserComment (JPEG comment)"},
    Attribute{"kMDItemSubject", ValueType::text, kOne, Origin::embedded, "Exif.Image.XPSubject"},
    Attribute{"kMDItemKeywords", ValueType::text, kSeveral, Origin::embedded,
              "Xmp.dc.subject Iptc.Application2.Keywords Exif.Image.XPKeywords"},
    Attribute{"kMDItemAuthors", ValueType::text, kSeveral, Origin::embedded,
              "Xmp.dc.creator Iptc.Application2.Byline Exif.Image.Artist Exif.Image.XPAuthor"},
    Attribute{"kMDItemCopyright", ValueType::text, kOne, Origin::embedded,
              "Xmp.dc.rights Iptc.Application2.Copyright Exif.Image.Copyright"},
    Attribute{"kMDItemStarRating", ValueType::integer, kOne, Origin::both,
              "(user.baloo.rating, halved) Xmp.xmp.Rating Exif.Image.Rating"},
    // Where and when.
    Attribute{"kMDItemCity", ValueType::text, kOne, Origin::embedded,
              "Xmp.photoshop.City Iptc.Application2.City"},
    Attribute{"kMDItemStateOrProvince", ValueType::text, kOne, Origin::embedded,
              "Xmp.photoshop.State Iptc.Application2.ProvinceState"},
    Attribute{"kMDItemCountry", ValueType::text, kOne, Origin::embedded,
              "Xmp.photoshop.Country Iptc.Application2.CountryName"},
    Attribute{"kMDItemNamedLocation", ValueType::text, kOne, Origin::embedded,
              "Xmp.iptc.Location Iptc.Application2.SubLocation"},
    Attribute{"kMDItemLatitude", ValueType::real, kOne, Origin::embedded,
              "(Exif.GPSInfo.GPSLatitude, in degrees, north is positive)"},
    Attribute{"kMDItemLongitude", ValueType::real, kOne, Origin::embedded,
              "(Exif.GPSInfo.GPSLongitude, in degrees, east is positive)"},
    Attribute{"kMDItemAltitude", ValueType::real, kOne, Origin::embedded,
              "(Exif.GPSInfo.GPSAltitude, in metres above the sea)"},
    Attribute{"kMDItemContentCreationDate", ValueType::date, kOne, Origin::embedded,
              "(Exif.Photo.DateTimeOriginal Exif.Photo.DateTimeDigitized Xmp.photoshop.DateCreated "
              "Iptc.Application2.DateCreated Xmp.xmp.CreateDate Exif.Image.DateTime, by its own "
              "offset, else in local time)"},
    // The camera.
    Attribute{"kMDItemAcquisitionMake", ValueType::text, kOne, Origin::embedded,
              "Exif.Image.Make Xmp.tiff.Make"},
    Attribute{"kMDItemAcquisitionModel", ValueType::text, kOne, Origin::embedded,
              "Exif.Image.Model Xmp.tiff.Model"},
    Attribute{"kMDItemLensModel", ValueType::text, kOne, Origin::embedded,
              "Exif.Photo.LensModel Xmp.aux.Lens"},
    Attribute{"kMDItemCreator", ValueType::text, kOne, Origin::embedded,
              "Exif.Image.Software Xmp.xmp.CreatorTool"},
    Attribute{"kMDItemISOSpeed", ValueType::integer, kOne, Origin::embedded,
              "Exif.Photo.ISOSpeedRatings Exif.Photo.RecommendedExposureIndex"},
    Attribute{"kMDItemFNumber", ValueType::real, kOne, Origin::embedded, "Exif.Photo.FNumber"},
    Attribute{"kMDItemExposureTimeSeconds", ValueType::real, kOne, Origin::embedded,
              "Exif.Photo.ExposureTime"},
    Attribute{"kMDItemFocalLength", ValueType::real, kOne, Origin::embedded,
              "Exif.Photo.FocalLength"},
    Attribute{"kMDItemFlashOnOff", ValueType::integer, kOne, Origin::embedded,
              "(the first bit of Exif.Photo.Flash)"},
    // The picture.
    Attribute{"kMDItemPixelWidth", ValueType::integer, kOne, Origin::embedded, "(as stored)"},
    Attribute{"kMDItemPixelHeight", ValueType::integer, kOne, Origin::embedded, "(as stored)"},
    Attribute{"kMDItemPixelCount", ValueType::integer, kOne, Origin::embedded, "(as stored)"},
    Attribute{"kMDItemOrientation", ValueType::integer, kOne, Origin::embedded,
              "(Exif.Image.Orientation: 0 upright or upside down, 1 on its side)"},
    Attribute{"kMDItemColorSpace", ValueType::text, kOne, Origin::embedded,
              "(Exif.Photo.ColorSpace: sRGB, Uncalibrated)"},
};

}  // namespace

std::span<const Attribute> attributeTable() { return kTable; }

std::optional<std::size_t> attributeNamed(std::string_view name) {
  const auto found = std::find_if(kTable.begin(), kTable.end(), [name](const Attribute& attribute) {
    return attribute.name == name;
  });
  if (found == kTable.end()) return std::nullopt;
  return static_cast<std::size_t>(found - kTable.begin());
}

}  // namespace pelmora::platform::metadata
