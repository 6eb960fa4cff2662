#include "platform/XmlScanner.h"

#include <gtest/gtest.h>

namespace pelmora::plist {

namespace {

std::optional<std::string> textOf(std::string_view xml) {
  XmlScanner scanner(xml);
  return scanner.text();
}

}  // namespace

TEST(XmlScanner, passesOverTheProlog) {
  XmlScanner scanner(
      "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- by hand -->\n"
      "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://x/PropertyList.dtd\"><a/>");
  EXPECT_TRUE(scanner.prolog());
  const auto tag = scanner.tag();
  ASSERT_TRUE(tag);
  EXPECT_EQ(tag->name, "a");
  EXPECT_TRUE(scanner.atEnd());
}

TEST(XmlScanner, refusesOtherEncodingsAndOwnEntities) {
  XmlScanner latin("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a/>");
  EXPECT_FALSE(latin.prolog());
  XmlScanner laughs("<!DOCTYPE plist [<!ENTITY a \"aaaaaaaa\">]><a/>");
  EXPECT_FALSE(laughs.prolog());
  EXPECT_STREQ(laughs.problem(), "the XML declares entities of its own");
}

TEST(XmlScanner, tellsTheThreeKindsOfTags) {
  XmlScanner scanner(" <a x=\"1\"> <!-- a > b --> <b/> </a>");
  const auto open = scanner.tag(), empty = scanner.tag(), close = scanner.tag();
  ASSERT_TRUE(open && empty && close);
  EXPECT_TRUE(open->opens && !open->closes);
  EXPECT_EQ(open->attributes, "x=\"1\"");
  EXPECT_TRUE(empty->opens && empty->closes);
  EXPECT_EQ(empty->attributes, "");
  EXPECT_TRUE(!close->opens && close->closes);
  EXPECT_TRUE(scanner.atEnd());
  EXPECT_FALSE(scanner.tag());
}

TEST(XmlScanner, refusesDamagedTags) {
  for (const char* const wrong :
       {"", "a", "<", "< a>", "<a", "<a <b>", "</a/>", "<!-- <a>", "<>"}) {
    XmlScanner scanner(wrong);
    EXPECT_FALSE(scanner.tag()) << wrong;
  }
}

TEST(XmlScanner, resolvesReferences) {
  EXPECT_EQ(textOf("a&lt;&gt;&amp;&quot;&apos;&#65;&#x1F4F7;<"), "a<>&\"'A📷");
}

TEST(XmlScanner, refusesUnknownReferences) {
  for (const char* const wrong : {"&<", "&;<", "&nbsp;<", "&#;<", "&#x;<", "&#0;<", "&#xD800;<",
                                  "&#x110000;<", "&#99999999999;<", "&#65", "&lt <"}) {
    EXPECT_EQ(textOf(wrong), std::nullopt) << wrong;
  }
}

TEST(XmlScanner, joinsCdataAndLeavesCommentsOut) {
  EXPECT_EQ(textOf("a<!-- no --><![CDATA[<&b>]]>c<"), "a<&b>c");
  EXPECT_EQ(textOf("<![CDATA[x"), std::nullopt);
  EXPECT_EQ(textOf("<!-- x"), std::nullopt);
}

TEST(XmlScanner, makesEveryLineEndTheSame) { EXPECT_EQ(textOf("a\r\nb\rc\nd<"), "a\nb\nc\nd"); }

}  // namespace pelmora::plist
