#include "decoder/JpegDecompressor.h"

#include "decoder/tests/PaintedJpeg.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/FileDescriptor.h"

#include <gtest/gtest.h>

#include <fcntl.h>

#include <jerror.h>

namespace pelmora::decoder {

namespace {

class JpegDecompressorTest : public testing::Test {
 protected:
  platform::FileDescriptor opened(const std::string& bytes) {
    return platform::FileDescriptor(open(_folder.write("a.jpg", bytes).c_str(), O_RDONLY));
  }

  platform::TemporaryFolder _folder;
};

}  // namespace

TEST_F(JpegDecompressorTest, readsAHeaderAndItsSegments) {
  const auto file = opened(paintedJpeg({.exif = exifOf(8), .profile = {"one", "two"}}));
  JpegDecompressor jpeg(file.get());
  ASSERT_TRUE(jpeg.run([&jpeg] { jpeg_read_header(&jpeg.info(), TRUE); }).ok());
  EXPECT_EQ(jpeg.info().image_width, 64U);
  EXPECT_EQ(jpeg.metadata().orientation(), 8);
  EXPECT_EQ(jpeg.metadata().profile(), "onetwo");
}

TEST_F(JpegDecompressorTest, readsAHeaderWithManyLargeSegments) {
  std::string bytes = paintedJpeg({.profile = {std::string(60'000, 'p'), std::string(9, 'q')}});
  const std::string segment = "\xff\xe5\xff\xff" + std::string(65'533, '\xff');
  for (int i = 0; i < 5; ++i) bytes.insert(2, segment);
  const auto file = opened(bytes);
  JpegDecompressor jpeg(file.get());
  ASSERT_TRUE(jpeg.run([&jpeg] { jpeg_read_header(&jpeg.info(), TRUE); }).ok());
  EXPECT_EQ(jpeg.metadata().profile().size(), 60'009U);
}

TEST_F(JpegDecompressorTest, failsForGoodOnceItHasFailed) {
  const auto file = opened("\xff\xd8\xff\xdano");
  JpegDecompressor jpeg(file.get());
  const Status first = jpeg.run([&jpeg] { jpeg_read_header(&jpeg.info(), TRUE); });
  ASSERT_FALSE(first.ok());
  bool isRun = false;
  const Status second = jpeg.run([&isRun] { isRun = true; });
  EXPECT_EQ(second.error().message, first.error().message);
  EXPECT_FALSE(isRun);
}

TEST_F(JpegDecompressorTest, tellsWhenTheDescriptorCannotBeRead) {
  JpegDecompressor jpeg(-1);
  const Status status = jpeg.run([&jpeg] { jpeg_read_header(&jpeg.info(), TRUE); });
  EXPECT_EQ(status.error().message, "it cannot be read: Bad file descriptor");
}

TEST_F(JpegDecompressorTest, takesWarningsOfDamageForErrorsAndNoOthers) {
  const auto outcomeOf = [this](int code) {
    const auto file = opened("");
    JpegDecompressor jpeg(file.get());
    return jpeg.run([&jpeg, code] {
      jpeg.info().err->msg_code = code;
      jpeg.info().err->emit_message(reinterpret_cast<j_common_ptr>(&jpeg.info()), -1);
    });
  };
  for (const int code : {JWRN_HIT_MARKER, JWRN_HUFF_BAD_CODE, JWRN_MUST_RESYNC,
                         JWRN_BOGUS_PROGRESSION, JWRN_ARITH_BAD_CODE, JWRN_JPEG_EOF}) {
    EXPECT_FALSE(outcomeOf(code).ok()) << code;
  }
  for (const int code : {JWRN_EXTRANEOUS_DATA, JWRN_ADOBE_XFORM, JWRN_JFIF_MAJOR,
                         JWRN_TOO_MUCH_DATA, JWRN_BOGUS_ICC}) {
    EXPECT_TRUE(outcomeOf(code).ok()) << code;
  }
}

}  // namespace pelmora::decoder
