#include "decoder/JxlColors.h"

#include "decoder/tests/PaintedJxl.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace pelmora::decoder {

namespace {

class JxlColorsTest : public testing::Test {
 protected:
  VideoColors read(const std::string& bytes) const {
    const FilePath file = _folder.write("a.jxl", bytes);
    const platform::FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    const VideoColors colors = jxlColors(descriptor.get());
    EXPECT_EQ(lseek(descriptor.get(), 0, SEEK_CUR), 0);
    return colors;
  }

  const VipsPointer _picture = paintBars({{0.2, 0.4, 0.6}});
  TemporaryFolder _folder;
};

}  // namespace

TEST_F(JxlColorsTest, areThoseOfTheFile) {
  for (const bool isLossless : {true, false}) {
    for (const VideoColors& colors : {VideoColors{9, 16}, VideoColors{9, 18}, VideoColors{12, 13},
                                      VideoColors{1, 8}, VideoColors{1, 13}}) {
      const VideoColors found = read(encodedJxl(_picture, {colors, isLossless}));
      EXPECT_EQ(found.primaries, colors.primaries) << isLossless;
      EXPECT_EQ(found.transfer, colors.transfer) << isLossless;
    }
  }
}

TEST_F(JxlColorsTest, areUnspecifiedInAFileThatIsCutShortOrNone) {
  const std::string bytes = encodedJxl(_picture, {VideoColors{9, 16}});
  for (const std::size_t size : {0U, 1U, 2U, 5U}) {
    EXPECT_EQ(read(bytes.substr(0, size)).transfer, 2) << size;
  }
  EXPECT_EQ(read("no picture").transfer, 2);
}

}  // namespace pelmora::decoder
