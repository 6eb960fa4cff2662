#include "platform/XmlPropertyList.h"

#include <gtest/gtest.h>

namespace pelmora::plist {

namespace {

constexpr std::string_view kWhole = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
  <!-- every type -->
  <key>Delay</key><real>4.5</real>
  <key>NumImages</key><integer>5</integer>
  <key>Since</key><date>2001-01-01T00:00:10Z</date>
  <key>Sources</key>
  <array>
    <dict>
      <key>bookmark</key><data>AAH/</data>
      <key>enabled</key><true/>
      <key>screens</key><string></string>
    </dict>
    <array/>
    <false/>
    <string>B&#252;cher &amp; Co</string>
  </array>
</dict>
</plist>
)";

Result<Value> wrapped(const std::string& inner) {
  return readXml("<plist version=\"1.0\">" + inner + "</plist>");
}

}  // namespace

TEST(XmlPropertyListReader, readsEveryType) {
  const Result<Value> read = readXml(kWhole);
  ASSERT_TRUE(read) << read.error().message;
  const Dictionary source = {{"bookmark", Bytes{0, 1, 255}}, {"enabled", true}, {"screens", ""}};
  const Dictionary expected = {{"Delay", 4.5},
                               {"NumImages", 5},
                               {"Since", ReferenceTime{10}},
                               {"Sources", Array{source, Array{}, false, "Bücher & Co"}}};
  EXPECT_EQ(*read, Value(expected));
}

TEST(XmlPropertyListReader, refusesAFileCutAtAnyLength) {
  for (std::size_t length = 0; length + 1 < kWhole.size(); ++length) {
    EXPECT_FALSE(readXml(kWhole.substr(0, length))) << length;
  }
}

TEST(XmlPropertyListReader, survivesAnyChangedByte) {
  const Value expected = *readXml(kWhole);
  int errors = 0;
  for (std::size_t at = 0; at < kWhole.size(); ++at) {
    std::string changed(kWhole);
    changed[at] = '<';
    if (!readXml(changed)) ++errors;
    changed[at] = static_cast<char>(kWhole[at] ^ 0x80);
    EXPECT_FALSE(readXml(changed)) << at;
  }
  EXPECT_GT(errors, 400);
}

TEST(XmlPropertyListReader, refusesWhatTheFormDoesNotAllow) {
  for (const char* const wrong :
       {"", "<integer>1</integer><integer>2</integer>", "<set/>", "<array><key>a</key></array>",
        "<dict><key>a</key></dict>", "<dict><string>a</string><true/></dict>", "<integer/>",
        "<dict><key>a</key><true/><key>a</key><true/></dict>", "<true>x</true>", "<string>a</key>",
        "<array></dict>", "<integer id=\"1\">1</integer>", "<string><b/></string>", "text",
        "<string>\x01</string>", "<date>yesterday</date>", "<data>A</data>", "</array>"}) {
    EXPECT_FALSE(wrapped(wrong)) << wrong;
  }
  EXPECT_FALSE(readXml("<list><true/></list>"));
  EXPECT_FALSE(readXml("<plist/>"));
  EXPECT_FALSE(readXml("<plist><true/></plist> more"));
}

TEST(XmlPropertyListReader, refusesWhatIsTooDeep) {
  const auto nested = [](int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += "<array>";
    for (int i = 0; i < depth; ++i) text += "</array>";
    return wrapped(text);
  };
  EXPECT_TRUE(nested(128));
  EXPECT_FALSE(nested(129));
  EXPECT_FALSE(nested(20'000));
}

}  // namespace pelmora::plist
