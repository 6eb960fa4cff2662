#include "decoder/VipsRows.h"

#include "decoder/tests/PaintedPicture.h"
#include "platform/FileDescriptor.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace pelmora::decoder {

namespace {

class VipsRowsTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { ASSERT_TRUE(startVips().ok()); }

  std::unique_ptr<RowReader> openWell(const FilePath& file, int longestSide = 1000) {
    _descriptor = platform::FileDescriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
    Result<std::unique_ptr<RowReader>> rows = openWithVips(_descriptor.get(), longestSide);
    if (!rows) throw std::runtime_error(rows.error().message);
    return std::move(*rows);
  }

  /// All bytes of all rows.
  static std::vector<std::uint8_t> readAll(RowReader& rows) {
    const std::size_t size = rows.format().bytesPerRow();
    std::vector<std::uint8_t> bytes(size * static_cast<std::size_t>(rows.format().size.height));
    const std::span<std::byte> all = std::as_writable_bytes(std::span(bytes));
    for (std::size_t offset = 0; offset < bytes.size(); offset += size) {
      if (!rows.readRow(all.subspan(offset, size)).ok()) throw std::runtime_error("no row");
    }
    EXPECT_TRUE(rows.finish().ok());
    return bytes;
  }

  static std::size_t numThreads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(tasks), end(tasks)));
  }

  TemporaryFolder _folder;
  platform::FileDescriptor _descriptor;
};

std::vector<std::uint8_t> bytesOf(const VipsPointer& picture) {
  std::size_t size = 0;
  auto* memory = static_cast<std::uint8_t*>(vips_image_write_to_memory(picture.get(), &size));
  std::vector<std::uint8_t> bytes(memory, memory + size);
  g_free(memory);
  return bytes;
}

}  // namespace

TEST_F(VipsRowsTest, areThoseOfThePicture) {
  const VipsPointer picture = paintQuarters(70, 50);
  for (const char* options :
       {"a.png", "a.tif", "a.tif[compression=lzw]", "a.tif[tile,tile-width=16,tile-height=16]",
        "a.tif[pyramid,tile,tile-width=16,tile-height=16]", "a.webp[lossless]", "a.jxl[lossless]",
        "a.png[interlace]"}) {
    const std::string name = options;
    const std::size_t bracket = std::min(name.find('['), name.size());
    const auto rows =
        openWell(save(_folder, picture, name.substr(0, bracket), name.substr(bracket)));
    EXPECT_EQ(rows->format().size, (PixelSize{70, 50})) << options;
    EXPECT_EQ(rows->format().model, ColorModel::rgb) << options;
    EXPECT_FALSE(rows->format().hasAlpha) << options;
    EXPECT_EQ(readAll(*rows), bytesOf(picture)) << options;
  }
}

TEST_F(VipsRowsTest, tellTheFormatAndTheSize) {
  const std::vector<std::pair<std::string, std::string>> names{
      {".jpg", "JPEG"}, {".png", "PNG"},   {".webp", "WebP"}, {".tif", "TIFF"},
      {".gif", "GIF"},  {".heic", "HEIC"}, {".avif", "AVIF"}, {".jxl", "JPEG XL"}};
  for (const auto& [suffix, name] : names) {
    const auto rows = openWell(save(_folder, paintQuarters(64, 48), "a" + suffix));
    EXPECT_EQ(rows->facts().format, name);
    EXPECT_EQ(rows->facts().storedSize, (PixelSize{64, 48})) << name;
    EXPECT_EQ(rows->facts().orientation, 1) << name;
  }
}

TEST_F(VipsRowsTest, tellTheOrientation) {
  for (const char* name : {"a.tif", "a.webp"}) {
    const auto rows = openWell(save(_folder, storeTurned(paintQuarters(), 6), name));
    EXPECT_EQ(rows->facts().orientation, 6) << name;
    EXPECT_EQ(rows->facts().storedSize, (PixelSize{32, 48})) << name;
  }
}

TEST_F(VipsRowsTest, haveNoProfileWhereTheFileNamesOrdinaryColours) {
  EXPECT_EQ(openWell(save(_folder, paintQuarters(), "a.jxl", "[lossless]"))->facts().profile, "");
}

TEST_F(VipsRowsTest, comeReducedWhereTheFormatOffersIt) {
  const auto webp = openWell(save(_folder, paintQuarters(960, 640), "a.webp"), 100);
  EXPECT_EQ(webp->format().size, (PixelSize{180, 120}));
  EXPECT_EQ(webp->facts().storedSize, (PixelSize{960, 640}));
  const auto jpeg = openWell(save(_folder, paintQuarters(960, 640), "a.jpg"), 100);
  EXPECT_EQ(jpeg->format().size, (PixelSize{240, 160}));
  const auto thin = openWell(save(_folder, paintQuarters(4000, 2), "c.webp"), 10);
  EXPECT_GE(thin->format().size.height, 1);
  const auto little = openWell(save(_folder, paintQuarters(960, 640), "b.webp"), 400);
  EXPECT_EQ(little->format().size, (PixelSize{960, 640}));
}

TEST_F(VipsRowsTest, needNoThread) {
  for (const char* name : {"a.png", "a.tif", "a.gif", "a.webp"}) {
    const FilePath file = save(_folder, paintQuarters(300, 200), name);
    const std::size_t before = numThreads();
    const auto rows = openWell(file);
    std::vector<std::byte> row(rows->format().bytesPerRow());
    ASSERT_TRUE(rows->readRow(row).ok());
    EXPECT_LE(numThreads(), before) << name;
  }
}

TEST_F(VipsRowsTest, endAfterTheLast) {
  const auto rows = openWell(save(_folder, paintQuarters(8, 8), "a.png"));
  readAll(*rows);
  std::vector<std::byte> row(rows->format().bytesPerRow());
  EXPECT_FALSE(rows->readRow(row).ok());
}

TEST_F(VipsRowsTest, failWhereTheFileIsCutShortAndFromThenOn) {
  std::string bytes = encoded(paintQuarters(400, 400), ".png", "[compression=0]");
  bytes.resize(bytes.size() / 2);
  const auto rows = openWell(_folder.write("a.png", bytes));
  std::vector<std::byte> row(rows->format().bytesPerRow());
  int good = 0;
  while (good < 400 && rows->readRow(row).ok()) ++good;
  EXPECT_GT(good, 100);
  EXPECT_LT(good, 220);
  EXPECT_FALSE(rows->readRow(row).ok());
  EXPECT_FALSE(rows->finish().ok());
}

TEST_F(VipsRowsTest, leaveTheDescriptorToItsOwner) {
  const FilePath file = save(_folder, paintQuarters(8, 8), "a.png");
  openWell(file).reset();
  EXPECT_NE(fcntl(_descriptor.get(), F_GETFD), -1);
}

}  // namespace pelmora::decoder
