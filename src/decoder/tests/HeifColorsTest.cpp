#include "decoder/HeifColors.h"

#include "decoder/tests/PaintedHeif.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

namespace pelmora::decoder {

namespace {

class HeifColorsTest : public testing::Test {
 protected:
  VideoColors read(const std::string& bytes) const {
    const FilePath file = _folder.write("a.heic", bytes);
    const platform::FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    const VideoColors colors = heifColors(descriptor.get());
    EXPECT_EQ(lseek(descriptor.get(), 0, SEEK_CUR), 0);
    return colors;
  }

  const VipsPointer _picture = paintBars({{0.2, 0.4, 0.6}}, 64, 64);
  TemporaryFolder _folder;
};

}  // namespace

TEST_F(HeifColorsTest, areThoseOfTheBox) {
  for (const bool isAvif : {false, true}) {
    for (const VideoColors& colors :
         {VideoColors{9, 16}, VideoColors{9, 18}, VideoColors{12, 13}}) {
      const VideoColors found = read(encodedHeif(_picture, {.isAvif = isAvif, .colors = colors}));
      EXPECT_EQ(found.primaries, colors.primaries) << isAvif;
      EXPECT_EQ(found.transfer, colors.transfer) << isAvif;
    }
  }
}

TEST_F(HeifColorsTest, areUnspecifiedInAFileThatIsCutShortOrNone) {
  const std::string bytes = encodedHeif(_picture, {.colors = {9, 16}});
  for (const std::size_t size : {0U, 10U, 40U, 100U}) {
    EXPECT_EQ(read(bytes.substr(0, size)).transfer, 2) << size;
  }
  EXPECT_EQ(read("no picture at all").transfer, 2);
}

}  // namespace pelmora::decoder
