#include "inspector/EmbeddedData.h"

#include "inspector/tests/PaintedFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <exiv2/exiv2.hpp>

namespace pelmora::inspector {

namespace {

std::vector<std::string> textsOf(const EmbeddedData& data, const char* key) {
  std::vector<std::string> texts;
  for (const Exiv2::Value* const value : data.find(EmbeddedKey(key))) {
    texts.push_back(value->toString());
  }
  return texts;
}

}  // namespace

using testing::ElementsAre;
using testing::IsEmpty;

TEST(EmbeddedData, findsWhatIsThereByItsKey) {
  const Bytes bytes = painted(Format::jpeg, [](Exiv2::Image& image) {
    fillWithEverything(image);
    Exiv2::StringValue keyword("again");
    image.iptcData().add(Exiv2::IptcKey("Iptc.Application2.Keywords"), &keyword);
  });
  const auto image = Exiv2::ImageFactory::open(bytes.data(), static_cast<long>(bytes.size()));
  image->readMetadata();
  const EmbeddedData data(*image, "image/jpeg");
  EXPECT_THAT(textsOf(data, "Exif.Image.Make"), ElementsAre("Maker"));
  EXPECT_THAT(textsOf(data, "Exif.GPSInfo.GPSLatitudeRef"), ElementsAre("N"));
  EXPECT_THAT(textsOf(data, "Iptc.Application2.Keywords"), ElementsAre("bridge", "again"));
  EXPECT_THAT(textsOf(data, "Xmp.xmp.Rating"), ElementsAre("4"));
  EXPECT_THAT(textsOf(data, "Exif.Image.Model"), IsEmpty());
  EXPECT_THAT(textsOf(data, "Xmp.dc.rights"), IsEmpty());
  EXPECT_EQ(data.type()->name, "public.jpeg");
  EXPECT_FALSE(data.isIptcUtf8());
}

TEST(EmbeddedData, knowsWhetherIptcIsUtf8) {
  const Bytes bytes = painted(Format::jpeg, [](Exiv2::Image& image) {
    image.iptcData()["Iptc.Envelope.CharacterSet"] = "\x1B%G";
  });
  const auto image = Exiv2::ImageFactory::open(bytes.data(), static_cast<long>(bytes.size()));
  image->readMetadata();
  EXPECT_TRUE(EmbeddedData(*image, "").isIptcUtf8());
}

TEST(EmbeddedKey, hasToBeKnown) {
  EXPECT_ANY_THROW(EmbeddedKey("Exif.Image.Nothing"));
  EXPECT_ANY_THROW(EmbeddedKey("Iptc.Nothing.City"));
  EXPECT_ANY_THROW(EmbeddedKey("Xmp.nothing.title"));
  EXPECT_ANY_THROW(EmbeddedKey("nothing"));
}

}  // namespace pelmora::inspector
