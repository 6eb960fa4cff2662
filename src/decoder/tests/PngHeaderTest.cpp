#include "decoder/PngHeader.h"

#include "decoder/tests/PaintedPicture.h"
#include "decoder/tests/PaintedPng.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace pelmora::decoder {

namespace {

class PngHeaderTest : public testing::Test {
 protected:
  PngHeader readHeader(const std::string& bytes) const {
    const FilePath file = _folder.write("a.png", bytes);
    const platform::FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    const PngHeader header = readPngHeader(descriptor.get());
    EXPECT_EQ(lseek(descriptor.get(), 0, SEEK_CUR), 0);
    return header;
  }
  VideoColors read(const std::string& bytes) const { return readHeader(bytes).colors; }

  TemporaryFolder _folder;
};

}  // namespace

TEST_F(PngHeaderTest, tellsTheColoursOfTheirChunk) {
  const std::string png = withPngChunk(pngHeader(8, 8, 8, 0), cicpChunk(9, 16));
  EXPECT_EQ(read(png).primaries, 9);
  EXPECT_EQ(read(png).transfer, 16);
}

TEST_F(PngHeaderTest, findsAChunkBehindOthers) {
  std::string png = withPngChunk(pngHeader(8, 8, 8, 0), cicpChunk(12, 13));
  png = withPngChunk(png, "tEXt" + std::string(100'000, 'x'));
  EXPECT_EQ(read(png).primaries, 12);
}

TEST_F(PngHeaderTest, leavesColoursUnspecifiedWithoutAChunk) {
  EXPECT_EQ(read(pngHeader(8, 8, 8, 0)).transfer, 2);
  EXPECT_EQ(read("").transfer, 2);
  EXPECT_EQ(read(pngHeader(8, 8, 8, 0).substr(0, 20)).transfer, 2);
}

TEST_F(PngHeaderTest, looksForNothingBehindThePixels) {
  EXPECT_EQ(read(pngHeader(8, 8, 8, 0) + pngChunk(cicpChunk(9, 16))).transfer, 2);
}

TEST_F(PngHeaderTest, ignoresAChunkOfAnotherLength) {
  EXPECT_EQ(read(withPngChunk(pngHeader(8, 8, 8, 0), cicpChunk(9, 16) + "x")).transfer, 2);
}

TEST_F(PngHeaderTest, tellsTheOrientationOfExif) {
  const std::string exif("eXIfMM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0", 30);
  EXPECT_EQ(readHeader(withPngChunk(pngHeader(8, 8, 8, 0), exif)).orientation, 6);
  EXPECT_EQ(readHeader(withPngChunk(pngHeader(8, 8, 8, 0), exif.substr(0, 14))).orientation, 1);
  EXPECT_EQ(readHeader(withPngChunk(pngHeader(8, 8, 8, 0), "eXIf")).orientation, 1);
  EXPECT_EQ(readHeader(pngHeader(8, 8, 8, 0)).orientation, 1);
}

TEST_F(PngHeaderTest, endsTheSearchAmongThousandsOfChunks) {
  std::string png = withPngChunk(pngHeader(8, 8, 8, 0), cicpChunk(9, 16));
  std::string many;
  for (int i = 0; i < 5000; ++i) many += pngChunk("tEXt");
  EXPECT_EQ(read(png.insert(33, many)).transfer, 2);
}

}  // namespace pelmora::decoder
