#include "decoder/PictureSignature.h"

#include "decoder/tests/PaintedPicture.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace pelmora::decoder {

namespace {

class PictureSignatureTest : public testing::Test {
 protected:
  platform::FileDescriptor opened(const std::string& bytes) const {
    const FilePath file = _folder.write("a", bytes);
    return platform::FileDescriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
  }
  bool isPicture(const std::string& bytes) const {
    return hasPictureSignature(opened(bytes).get());
  }

  TemporaryFolder _folder;
};

}  // namespace

TEST_F(PictureSignatureTest, isSeenInEveryFormat) {
  for (const char* suffix : {".jpg", ".png", ".webp", ".tif", ".gif", ".heic", ".avif", ".jxl"}) {
    EXPECT_TRUE(isPicture(encoded(paintQuarters(), suffix))) << suffix;
  }
  EXPECT_TRUE(isPicture(encoded(paintQuarters(), ".tif", "[bigtiff]")));
}

TEST_F(PictureSignatureTest, isNotSeenInOtherFiles) {
  for (const char* bytes : {"", "B", "BM", "%PDF-1.4", "<svg xmlns=", "P6\n1 1\n255\n",
                            "RIFF....WAV", "a text of some words", "II", "GIF"}) {
    EXPECT_FALSE(isPicture(bytes)) << bytes;
  }
  EXPECT_FALSE(isPicture(std::string(1000, '\0')));
}

TEST_F(PictureSignatureTest, tellsJpegFromTheOthers) {
  EXPECT_TRUE(hasJpegSignature(opened(encoded(paintQuarters(), ".jpg")).get()));
  EXPECT_FALSE(hasJpegSignature(opened(encoded(paintQuarters(), ".png")).get()));
  EXPECT_FALSE(hasJpegSignature(opened("\xFF").get()));
}

TEST_F(PictureSignatureTest, tellsBmpFromTexts) {
  for (const char* begin : {"BM........\x36...\x28", "BM........\x1A...\x0C"}) {
    EXPECT_TRUE(hasBmpSignature(opened(std::string(begin) + std::string(3, '\0')).get()));
  }
  EXPECT_FALSE(hasBmpSignature(opened("BMs are a thing to write about").get()));
  EXPECT_FALSE(hasBmpSignature(opened("BM").get()));
  EXPECT_FALSE(hasBmpSignature(opened("").get()));
}

TEST_F(PictureSignatureTest, leavesTheDescriptorWhereItIs) {
  const auto descriptor = opened(encoded(paintQuarters(), ".png"));
  ASSERT_EQ(lseek(descriptor.get(), 5, SEEK_SET), 5);
  EXPECT_TRUE(hasPictureSignature(descriptor.get()));
  EXPECT_EQ(lseek(descriptor.get(), 0, SEEK_CUR), 5);
}

}  // namespace pelmora::decoder
