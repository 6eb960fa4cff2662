#include "platform/linux/FileTags.h"

#include "platform/PropertyList.h"

#include <gmock/gmock.h>

#include <map>

namespace pelmora::platform {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string encoded(const plist::Value& value) {
  const plist::Bytes bytes = plist::writeBinary(value);
  return {bytes.begin(), bytes.end()};
}

}  // namespace

TEST(FileTags, areBetweenCommas) {
  EXPECT_THAT(tagsOfText("Red"), ElementsAre("Red"));
  EXPECT_THAT(tagsOfText("Red,Sea, two words ,\tlast\n"),
              ElementsAre("Red", "Sea", "two words", "last"));
}

TEST(FileTags, areNoEmptyOnes) {
  EXPECT_THAT(tagsOfText(""), IsEmpty());
  EXPECT_THAT(tagsOfText(" , ,,\n"), IsEmpty());
  EXPECT_THAT(tagsOfText(",a,,b,"), ElementsAre("a", "b"));
}

TEST(FileTags, areCleanText) {
  EXPECT_THAT(tagsOfText(std::string_view("\xE9,a\0b,\x1B", 7)), ElementsAre("\xEF\xBF\xBD", "ab"));
}

TEST(FileTags, areNotEndlesslyLong) {
  EXPECT_THAT(tagsOfText(std::string(kMaxTagBytes + 1, 'x') + ",a"),
              ElementsAre(std::string(kMaxTagBytes, 'x'), "a"));
}

TEST(FileTags, areNotEndlesslyMany) {
  std::string value;
  for (int i = 0; i < 30'000; ++i) value += "a,";
  EXPECT_THAT(tagsOfText(value), SizeIs(kMaxTags));
  EXPECT_THAT(tagsOfPropertyList(encoded(plist::Array(1000, plist::Value("a")))), SizeIs(kMaxTags));
}

TEST(FileTags, comeFromPropertyListsWithoutTheirColours) {
  EXPECT_THAT(tagsOfPropertyList(encoded(
                  plist::Array{"Red\n6", "Plain", "Meer \xC3\xA9\n0", "\n3", 7, plist::Array{}})),
              ElementsAre("Red", "Plain", "Meer \xC3\xA9"));
}

TEST(FileTags, areTheDesktopsBeforeThoseFromAMac) {
  std::map<std::string, std::string> attributes;
  const auto tags = [&attributes] {
    return tagsOfAttributes([&attributes](const char* name) {
      const auto found = attributes.find(name);
      return found == attributes.end() ? std::nullopt : std::optional(found->second);
    });
  };
  EXPECT_THAT(tags(), IsEmpty());
  attributes["user.com.apple.metadata:_kMDItemUserTags"] = encoded(plist::Array{"Green\n2"});
  EXPECT_THAT(tags(), ElementsAre("Green"));
  attributes["user.xdg.tags"] = " ,";
  EXPECT_THAT(tags(), ElementsAre("Green"));
  attributes["user.xdg.tags"] = "Red, Sea";
  EXPECT_THAT(tags(), ElementsAre("Red", "Sea"));
}

TEST(FileTags, areNoneInAnythingElse) {
  EXPECT_THAT(tagsOfPropertyList(""), IsEmpty());
  EXPECT_THAT(tagsOfPropertyList("bplist00 and no more"), IsEmpty());
  EXPECT_THAT(tagsOfPropertyList(encoded("Red\n6")), IsEmpty());
}

}  // namespace pelmora::platform
