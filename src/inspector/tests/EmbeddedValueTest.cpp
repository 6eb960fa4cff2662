#include "inspector/EmbeddedValue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pelmora::inspector {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A value of a type, from the text in which Exiv2 takes it.
template <typename T>
T valueOf(const std::string& text, T value = T()) {
  value.read(text);
  return value;
}

}  // namespace

TEST(EmbeddedValue, hasTheTextsOfLists) {
  Exiv2::XmpArrayValue list(Exiv2::xmpBag);
  list.read("lake");
  list.read(" ");
  list.read("mountain");
  EXPECT_THAT(textsOf(list), ElementsAre("lake", "mountain"));
  EXPECT_THAT(textsOf(Exiv2::XmpTextValue("lake")), ElementsAre("lake"));
  EXPECT_THAT(textsOf(Exiv2::AsciiValue("lake")), ElementsAre("lake"));
  EXPECT_THAT(textsOf(Exiv2::AsciiValue("")), IsEmpty());
}

TEST(EmbeddedValue, hasTheTextThatIsForAllLanguages) {
  Exiv2::LangAltValue texts;
  texts.read("lang=de-DE See");
  EXPECT_THAT(textsOf(texts), ElementsAre("See"));
  texts.read("lang=x-default lake");
  EXPECT_THAT(textsOf(texts), ElementsAre("lake"));
}

TEST(EmbeddedValue, hasTheTextOfAComment) {
  EXPECT_THAT(textsOf(Exiv2::CommentValue("charset=Ascii A comment")), ElementsAre("A comment"));
}

TEST(EmbeddedValue, hasTheTextOfWideBytes) {
  Exiv2::DataValue bytes(Exiv2::unsignedByte);
  bytes.read("108 0 97 0 107 0 101 0 0 0");
  EXPECT_EQ(textOfWideBytes(bytes), "lake");
}

TEST(EmbeddedValue, hasTheNumbersOfEveryType) {
  EXPECT_EQ(numberOf(valueOf<Exiv2::UShortValue>("65535")), 65535);
  EXPECT_EQ(numberOf(valueOf<Exiv2::ShortValue>("-1")), -1);
  EXPECT_EQ(numberOf(valueOf<Exiv2::ULongValue>("4294967295")), 4294967295.0);
  EXPECT_EQ(numberOf(valueOf<Exiv2::LongValue>("-5")), -5);
  EXPECT_EQ(numberOf(valueOf<Exiv2::DoubleValue>("0.5")), 0.5);
  EXPECT_EQ(numberOf(valueOf<Exiv2::FloatValue>("0.5")), 0.5);
  EXPECT_EQ(numberOf(valueOf("1", Exiv2::DataValue(Exiv2::unsignedByte))), 1);
}

TEST(EmbeddedValue, dividesFractionsExactly) {
  EXPECT_EQ(numberOf(valueOf<Exiv2::URationalValue>("28/10")), 2.8);
  EXPECT_EQ(numberOf(valueOf<Exiv2::URationalValue>("4294967295/1")), 4294967295.0);
  EXPECT_EQ(numberOf(valueOf<Exiv2::RationalValue>("-1/3")), -1.0 / 3);
  EXPECT_EQ(numberOf(valueOf<Exiv2::URationalValue>("1/1 2/1 3/1"), 2), 3);
  EXPECT_EQ(numberOf(Exiv2::XmpTextValue("28/10")), 2.8);
}

TEST(EmbeddedValue, hasNoNumberWhereThereIsNone) {
  EXPECT_EQ(numberOf(valueOf<Exiv2::URationalValue>("1/0")), std::nullopt);
  EXPECT_EQ(numberOf(valueOf<Exiv2::URationalValue>("1/1"), 1), std::nullopt);
  EXPECT_EQ(numberOf(Exiv2::UShortValue()), std::nullopt);
  EXPECT_EQ(numberOf(valueOf<Exiv2::DoubleValue>("inf")), std::nullopt);
  for (const char* text : {"", "x", "1x", "1/", "1/0", "nan", "1e999"}) {
    EXPECT_EQ(numberOf(Exiv2::XmpTextValue(text)), std::nullopt) << text;
  }
}

}  // namespace pelmora::inspector
