#include "inspector/EmbeddedText.h"

#include "platform/metadata/FileMetadata.h"
#include "platform/PlainText.h"
#include "platform/UnicodeText.h"

#include <gtest/gtest.h>

namespace pelmora::inspector {

using platform::metadata::kMaxTextBytes;
using std::string_literals::operator""s;

TEST(EmbeddedText, takesUtf8AsItIsAndAllElseAsLatin1) {
  EXPECT_EQ(textFromBytes("M\xC3\xBCnster"), "M\u00FCnster");
  EXPECT_EQ(textFromBytes("M\xFCnster"), "M\u00FCnster");
  EXPECT_EQ(textFromBytes("M\xFCnster", Otherwise::replaced), "M\uFFFDnster");
  EXPECT_EQ(textFromBytes(""), "");
}

TEST(EmbeddedText, isOneLineWithoutBlanksAtItsEnds) {
  EXPECT_EQ(textFromBytes("  one\ntwo\tthree\x07 "), "one two three");
  EXPECT_EQ(textFromBytes("one\0two"s), "one");
  EXPECT_EQ(textFromBytes("   "), "");
}

TEST(EmbeddedText, isCutBetweenCharacters) {
  for (std::size_t lead = 0; lead < 4; ++lead) {
    std::string text(lead, 'x');
    while (text.size() < 10 * kMaxTextBytes) text += "\U0001F600";
    const std::string cut = textFromBytes(text);
    EXPECT_LE(cut.size(), kMaxTextBytes);
    EXPECT_GT(cut.size(), kMaxTextBytes - 4);
    EXPECT_TRUE(platform::isPlainText(cut));
    EXPECT_TRUE(text.starts_with(cut));
  }
  EXPECT_EQ(textFromBytes(std::string(kMaxTextBytes - 1, 'x') + " y").size(), kMaxTextBytes - 1);
  EXPECT_LE(textFromBytes(std::string(kMaxTextBytes, '\xFC')).size(), kMaxTextBytes);
}

TEST(EmbeddedText, readsUtf16OfBothByteOrders) {
  EXPECT_EQ(textFromUtf16("\xFC\0a\0\0\0b\0"s, ByteOrder::littleEndian), "\u00FCa");
  EXPECT_EQ(textFromUtf16("\0\xFC\0a"s, ByteOrder::bigEndian), "\u00FCa");
  EXPECT_EQ(textFromUtf16("\xFE\xFF\0a"s, ByteOrder::littleEndian), "a");
  EXPECT_EQ(textFromUtf16("\xFF\xFE"
                          "a\0"s,
                          ByteOrder::bigEndian),
            "a");
  EXPECT_EQ(textFromUtf16("\x3D\xD8\x00\xDE"s, ByteOrder::littleEndian), "\U0001F600");
}

TEST(EmbeddedText, replacesHalvesOfUtf16AndDropsAnOddByte) {
  EXPECT_EQ(textFromUtf16("\x3D\xD8"
                          "a\0"s,
                          ByteOrder::littleEndian),
            "\uFFFDa");
  EXPECT_EQ(textFromUtf16("\x00\xDE"s, ByteOrder::littleEndian), "\uFFFD");
  EXPECT_EQ(textFromUtf16("\x3D\xD8"s, ByteOrder::littleEndian), "\uFFFD");
  EXPECT_EQ(textFromUtf16("a\0b"s, ByteOrder::littleEndian), "a");
  EXPECT_EQ(textFromUtf16("", ByteOrder::littleEndian), "");
}

TEST(EmbeddedText, readsCommentsByTheirCharacterSet) {
  EXPECT_EQ(textFromComment("ASCII\0\0\0A comment"s, ByteOrder::littleEndian), "A comment");
  EXPECT_EQ(textFromComment("UNICODE\0a\0b\0"s, ByteOrder::littleEndian), "ab");
  EXPECT_EQ(textFromComment("UNICODE\0\0a\0b"s, ByteOrder::bigEndian), "ab");
  EXPECT_EQ(textFromComment("\0\0\0\0\0\0\0\0M\xFCnster"s, ByteOrder::bigEndian), "M\u00FCnster");
  EXPECT_EQ(textFromComment("JIS\0\0\0\0\0\x24\x42"s, ByteOrder::bigEndian), "");
  EXPECT_EQ(textFromComment("short", ByteOrder::bigEndian), "short");
}

}  // namespace pelmora::inspector
