#include "inspector/DerivedAttributes.h"

#include "inspector/AttributeReader.h"
#include "inspector/MetadataReader.h"
#include "inspector/tests/PaintedFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <exiv2/exiv2.hpp>

#include <map>
#include <string>

namespace pelmora::inspector {

using platform::metadata::Attribute;
using platform::metadata::attributeTable;
using platform::metadata::FileMetadata;
using platform::predicate::Constant;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Exif = std::map<std::string, std::string>;

class DerivedAttributes : public testing::Test {
 protected:
  [[nodiscard]] std::vector<Constant> read(const std::string& attribute, const Exif& exif) const {
    const Bytes bytes = painted(Format::jpeg, [&exif](Exiv2::Image& image) {
      for (const auto& [key, text] : exif) image.exifData()["Exif." + key].setValue(text);
    });
    const FileMetadata metadata = reader.read(fileOf(bytes).get()).value();
    const auto values = metadata.values(attribute);
    return {values.begin(), values.end()};
  }

  const MetadataReader reader;
};

Exif position(const std::string& what, const std::string& value, const std::string& reference) {
  return {{"GPSInfo.GPS" + what, value}, {"GPSInfo.GPS" + what + "Ref", reference}};
}

}  // namespace

TEST_F(DerivedAttributes, areAllThere) {
  const Exif everything{{"Photo.UserComment", "charset=Ascii lake"},
                        {"GPSInfo.GPSLatitude", "51/1 30/1 0/1"},
                        {"GPSInfo.GPSLongitude", "7/1 30/1 36/1"},
                        {"GPSInfo.GPSAltitude", "100/1"},
                        {"Photo.DateTimeOriginal", "2021:05:06 07:08:09"},
                        {"Photo.Flash", "1"},
                        {"Image.Orientation", "6"},
                        {"Photo.ColorSpace", "1"},
                        {"Photo.PixelXDimension", "4000"},
                        {"Photo.PixelYDimension", "3000"}};
  for (const Attribute& attribute : attributeTable()) {
    if (!derivedReaderOf(attribute.name)) continue;
    EXPECT_EQ(read(std::string(attribute.name), everything).empty(), false) << attribute.name;
  }
  EXPECT_EQ(derivedReaderOf("kMDItemTitle"), nullptr);
}

TEST_F(DerivedAttributes, sayWhatKindOfPictureItIs) {
  EXPECT_THAT(read("kMDItemKind", {}), ElementsAre(Constant("JPEG image")));
  EXPECT_THAT(read("kMDItemContentType", {}), ElementsAre(Constant("public.jpeg")));
  EXPECT_THAT(
      read("kMDItemContentTypeTree", {}),
      ElementsAre(Constant("public.jpeg"), Constant("public.image"), Constant("public.data"),
                  Constant("public.item"), Constant("public.content")));
}

TEST_F(DerivedAttributes, sayWhereItWasTaken) {
  const auto latitude = [this](const std::string& value, const std::string& half) {
    return read("kMDItemLatitude", position("Latitude", value, half));
  };
  EXPECT_THAT(latitude("51/1 30/1 36/1", "N"), ElementsAre(Constant(51.51)));
  EXPECT_THAT(latitude("51/1 3060/100 0/1", "S"), ElementsAre(Constant(-51.51)));
  EXPECT_THAT(latitude("51/1", "N"), ElementsAre(Constant(51.0)));
  EXPECT_THAT(latitude("91/1 0/1 0/1", "N"), IsEmpty());
  EXPECT_THAT(latitude("1/0 0/1 0/1", "N"), IsEmpty());
  EXPECT_THAT(read("kMDItemLongitude", position("Longitude", "179/1 0/1 0/1", "W")),
              ElementsAre(Constant(-179.0)));
  EXPECT_THAT(read("kMDItemAltitude", position("Altitude", "1001/10", "0")),
              ElementsAre(Constant(100.1)));
  EXPECT_THAT(read("kMDItemAltitude", position("Altitude", "5/1", "1")),
              ElementsAre(Constant(-5.0)));
}

TEST_F(DerivedAttributes, sayWhenItWasTaken) {
  constexpr double kMorning = 1620284889;
  const auto seconds = [this](const Exif& exif) {
    const auto values = read("kMDItemContentCreationDate", exif);
    return values.empty() ? 0 : values[0].get<ReferenceTime>()->posixSeconds() - kMorning;
  };
  const Exif taken{{"Photo.DateTimeOriginal", "2021:05:06 07:08:09"},
                   {"Photo.OffsetTimeOriginal", "+02:00"},
                   {"Photo.OffsetTime", "+05:00"},
                   {"Image.DateTime", "2022:01:01 00:00:00"}};
  EXPECT_EQ(seconds(taken), -7200);
  EXPECT_EQ(seconds({{"Photo.DateTimeOriginal", "0000:00:00 00:00:00"},
                     {"Image.DateTime", "2021:05:06 07:08:09"},
                     {"Photo.OffsetTime", "+01:00"}}),
            -3600);
  EXPECT_EQ(seconds({{"Photo.DateTimeDigitized", "2021:05:06 07:08:09"},
                     {"Photo.OffsetTimeDigitized", "Z"}}),
            0);
  EXPECT_THAT(read("kMDItemContentCreationDate", {{"Image.DateTime", "    :  :     :  :  "}}),
              IsEmpty());
}

TEST_F(DerivedAttributes, sayWhenItWasTakenByXmpAndIptc) {
  const auto dateOf = [this](const std::function<void(Exiv2::Image&)>& fill) {
    const auto metadata = reader.read(fileOf(painted(Format::jpeg, fill)).get()).value();
    const auto values = metadata.values("kMDItemContentCreationDate");
    return values.empty() ? 0 : values[0].get<ReferenceTime>()->posixSeconds();
  };
  for (const char* key : {"Xmp.photoshop.DateCreated", "Xmp.xmp.CreateDate"}) {
    EXPECT_EQ(
        dateOf([key](Exiv2::Image& image) { image.xmpData()[key] = "2021-05-06T09:08:09+02:00"; }),
        1620284889);
  }
  EXPECT_EQ(dateOf([](Exiv2::Image& image) {
              image.iptcData()["Iptc.Application2.DateCreated"] = "2021-05-06";
              image.iptcData()["Iptc.Application2.TimeCreated"] = "09:08:09+02:00";
            }),
            1620284889);
}

TEST_F(DerivedAttributes, sayHowItWasTaken) {
  EXPECT_THAT(read("kMDItemFlashOnOff", {{"Photo.Flash", "25"}}), ElementsAre(Constant(1)));
  EXPECT_THAT(read("kMDItemFlashOnOff", {{"Photo.Flash", "16"}}), ElementsAre(Constant(0)));
  EXPECT_THAT(read("kMDItemOrientation", {{"Image.Orientation", "3"}}), ElementsAre(Constant(0)));
  EXPECT_THAT(read("kMDItemOrientation", {{"Image.Orientation", "8"}}), ElementsAre(Constant(1)));
  EXPECT_THAT(read("kMDItemOrientation", {{"Image.Orientation", "9"}}), IsEmpty());
  EXPECT_THAT(read("kMDItemColorSpace", {{"Photo.ColorSpace", "65535"}}),
              ElementsAre(Constant("Uncalibrated")));
  EXPECT_THAT(read("kMDItemColorSpace", {{"Photo.ColorSpace", "7"}}), IsEmpty());
}

TEST_F(DerivedAttributes, takeTheCommentOfTheFormatWhereThereIsNoOther) {
  const auto commentOf = [this](const std::function<void(Exiv2::Image&)>& fill) {
    const auto metadata = reader.read(fileOf(painted(Format::jpeg, fill)).get()).value();
    const auto values = metadata.values("kMDItemComment");
    return std::vector<Constant>(values.begin(), values.end());
  };
  EXPECT_THAT(commentOf([](Exiv2::Image& image) { image.setComment("lake"); }),
              ElementsAre(Constant("lake")));
  EXPECT_THAT(commentOf([](Exiv2::Image& image) {
                image.setComment("lake");
                image.exifData()["Exif.Photo.UserComment"] = "charset=Ascii bridge";
              }),
              ElementsAre(Constant("bridge")));
}

}  // namespace pelmora::inspector
