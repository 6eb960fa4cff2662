#include "decoder/JpegMetadata.h"

#include "decoder/tests/PaintedJpeg.h"

#include <gtest/gtest.h>

namespace pelmora::decoder {

namespace {

std::span<const std::uint8_t> bytesOf(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string piece(int number, int count, const std::string& bytes) {
  std::string segment("ICC_PROFILE\0", 12);
  segment += static_cast<char>(number);
  segment += static_cast<char>(count);
  return segment + bytes;
}

std::string profileOf(const std::vector<std::string>& segments) {
  JpegMetadata metadata;
  for (const std::string& segment : segments) metadata.takeApp2(bytesOf(segment));
  return metadata.profile();
}

}  // namespace

TEST(JpegMetadata, takesTheOrientationOfTheFirstExifSegment) {
  JpegMetadata metadata;
  EXPECT_EQ(metadata.orientation(), 1);
  metadata.takeApp1(bytesOf("http://ns.adobe.com/xap/1.0/"));
  metadata.takeApp1(bytesOf(exifOf(6)));
  metadata.takeApp1(bytesOf(exifOf(3)));
  EXPECT_EQ(metadata.orientation(), 6);
}

TEST(JpegMetadata, putsTheProfileTogetherInAnyOrder) {
  EXPECT_EQ(profileOf({piece(1, 1, "whole")}), "whole");
  EXPECT_EQ(profileOf({piece(3, 3, "c"), piece(1, 3, "a"), "MPF", piece(2, 3, "b")}), "abc");
}

TEST(JpegMetadata, leavesAProfileOutThatIsNotWhole) {
  EXPECT_EQ(profileOf({}), "");
  EXPECT_EQ(profileOf({piece(1, 2, "a")}), "");
  EXPECT_EQ(profileOf({piece(2, 2, "b")}), "");
  EXPECT_EQ(profileOf({piece(1, 2, "a"), piece(1, 2, "a")}), "");
  EXPECT_EQ(profileOf({piece(1, 2, "a"), piece(2, 3, "b")}), "");
  EXPECT_EQ(profileOf({piece(0, 1, "a")}), "");
  EXPECT_EQ(profileOf({piece(2, 1, "a")}), "");
  EXPECT_EQ(profileOf({piece(1, 1, "")}), "");
  EXPECT_EQ(profileOf({std::string("ICC_PROFILE\0\1", 13)}), "");
}

TEST(JpegMetadata, leavesAProfileOutThatIsTooLarge) {
  const std::string part(65'000, 'x');
  std::vector<std::string> segments;
  for (int i = 1; i <= 100; ++i) segments.push_back(piece(i, 100, part));
  EXPECT_EQ(profileOf(segments), "");
  EXPECT_EQ(profileOf({piece(1, 2, part), piece(2, 2, part)}).size(), 130'000U);
}

}  // namespace pelmora::decoder
