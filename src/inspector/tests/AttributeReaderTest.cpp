#include "inspector/AttributeReader.h"

#include "inspector/MetadataReader.h"
#include "inspector/tests/PaintedFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <exiv2/exiv2.hpp>

#include <string>

namespace pelmora::inspector {

using platform::metadata::Attribute;
using platform::metadata::attributeNamed;
using platform::metadata::attributeTable;
using platform::metadata::FileMetadata;
using platform::metadata::Origin;
using platform::metadata::ValueType;
using platform::predicate::Constant;
using testing::Contains;
using testing::ElementsAre;

namespace {

std::vector<Constant> valuesOf(const FileMetadata& metadata, std::string_view attribute) {
  const auto values = metadata.values(attribute);
  return {values.begin(), values.end()};
}

/// "lake" as bytes of UTF-16.
constexpr const char* kWideLake = "108 0 97 0 107 0 101 0 0 0";

/// What is written under a key so that the attribute is `expected` then.
std::string sampleFor(const EmbeddedKey& key, const Attribute& attribute) {
  if (key.name == "Xmp.digiKam.ColorLabel") return "2";
  if (key.name == "Exif.Photo.UserComment") return "charset=Ascii lake";
  if (key.name.starts_with("Exif.Image.XP")) return kWideLake;
  return attribute.type == ValueType::text                                              ? "lake"
         : attribute.type == ValueType::real && key.family == EmbeddedKey::Family::exif ? "5/2"
                                                                                        : "5";
}

Constant expectedFor(const EmbeddedKey& key, const Attribute& attribute) {
  if (key.name == "Xmp.digiKam.ColorLabel") return "Orange";
  if (attribute.type == ValueType::text) return "lake";
  return attribute.type == ValueType::real ? Constant(2.5) : Constant(5);
}

void set(Exiv2::Image& image, const EmbeddedKey& key, const std::string& text) {
  if (key.family == EmbeddedKey::Family::exif) image.exifData()[key.name].setValue(text);
  if (key.family == EmbeddedKey::Family::iptc) image.iptcData()[key.name].setValue(text);
  if (key.family == EmbeddedKey::Family::xmp) image.xmpData()[key.name].setValue(text);
}

class AttributeReaderTest : public testing::Test {
 protected:
  [[nodiscard]] FileMetadata readJpeg(const std::function<void(Exiv2::Image&)>& fill) const {
    return reader.read(fileOf(painted(Format::jpeg, fill)).get()).value();
  }

  const MetadataReader reader;
};

}  // namespace

TEST_F(AttributeReaderTest, readsEveryKeyOfEveryRow) {
  for (const Attribute& attribute : attributeTable()) {
    if (attribute.origin == Origin::file) continue;
    for (const EmbeddedKey& key : keysIn(attribute.readFrom)) {
      const FileMetadata metadata =
          readJpeg([&](Exiv2::Image& image) { set(image, key, sampleFor(key, attribute)); });
      EXPECT_THAT(valuesOf(metadata, attribute.name), ElementsAre(expectedFor(key, attribute)))
          << attribute.name << " of " << key.name;
    }
  }
}

TEST_F(AttributeReaderTest, hasAReadingForEveryRow) {
  for (const Attribute& attribute : attributeTable()) {
    if (attribute.origin == Origin::file) continue;
    EXPECT_TRUE(!keysIn(attribute.readFrom).empty() || derivedReaderOf(attribute.name))
        << attribute.name;
  }
}

TEST_F(AttributeReaderTest, takesTheFirstKeyThatIsThere) {
  const FileMetadata metadata = readJpeg([](Exiv2::Image& image) {
    image.exifData()["Exif.Image.XPTitle"].setValue(kWideLake);
    image.iptcData()["Iptc.Application2.ObjectName"].setValue("bridge");
    image.xmpData()["Xmp.dc.title"].setValue(" ");
  });
  EXPECT_THAT(valuesOf(metadata, "kMDItemTitle"), ElementsAre(Constant("bridge")));
}

TEST_F(AttributeReaderTest, putsSeveralTogetherWithoutDoubles) {
  const FileMetadata metadata = readJpeg([](Exiv2::Image& image) {
    image.exifData()["Exif.Image.Artist"].setValue("Ada; Bea;;");
    image.xmpData()["Xmp.dc.creator"].setValue("Bea");
  });
  EXPECT_THAT(valuesOf(metadata, "kMDItemAuthors"), ElementsAre(Constant("Bea"), Constant("Ada")));
}

TEST_F(AttributeReaderTest, takesOfTagsInTagsTheInnermost) {
  const FileMetadata metadata = readJpeg([](Exiv2::Image& image) {
    image.xmpData()["Xmp.digiKam.TagsList"].setValue("Places/Paris");
    image.xmpData()["Xmp.digiKam.TagsList"].setValue("Places/");
    image.xmpData()["Xmp.dc.subject"].setValue("Paris");
    image.xmpData()["Xmp.digiKam.ColorLabel"].setValue("0");
  });
  EXPECT_THAT(valuesOf(metadata, "kMDItemUserTags"), ElementsAre(Constant("Paris")));
}

TEST_F(AttributeReaderTest, takesIptcForUtf8WhereItSaysSo) {
  const auto read = [this](const char* characterSet) {
    return valuesOf(readJpeg([=](Exiv2::Image& image) {
                      if (*characterSet) {
                        image.iptcData()["Iptc.Envelope.CharacterSet"] = characterSet;
                      }
                      image.iptcData()["Iptc.Application2.City"] = "M\xFCnster";
                    }),
                    "kMDItemCity");
  };
  EXPECT_THAT(read(""), ElementsAre(Constant("M\u00FCnster")));
  EXPECT_THAT(read("\x1B%G"), ElementsAre(Constant("M\uFFFDnster")));
}

TEST(KeysIn, areTheWordsThatAreNotInBrackets) {
  const auto keys = keysIn("(a b) Xmp.dc.title (c) Exif.Image.Make (d)");
  ASSERT_EQ(keys.size(), 2U);
  EXPECT_EQ(keys[0].name, "Xmp.dc.title");
  EXPECT_EQ(keys[1].name, "Exif.Image.Make");
  EXPECT_TRUE(keysIn("(as stored)").empty());
  EXPECT_TRUE(keysIn("").empty());
}

}  // namespace pelmora::inspector
