#include "decoder/BmpRows.h"

#include "decoder/tests/PaintedBmp.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <stdexcept>
#include <vector>

namespace pelmora::decoder {

namespace {

using namespace std::string_literals;

constexpr PixelSize kSize{37, 22};

class BmpRowsTest : public testing::Test {
 protected:
  Result<std::unique_ptr<RowReader>> openBytes(const std::string& bytes) {
    _descriptor = fileOf(bytes);
    return openBmp(_descriptor.get());
  }
  std::unique_ptr<RowReader> openWell(const std::string& bytes) {
    Result<std::unique_ptr<RowReader>> rows = openBytes(bytes);
    if (!rows) throw std::runtime_error(rows.error().message);
    return std::move(*rows);
  }
  std::string reason(const std::string& bytes) {
    const auto rows = openBytes(bytes);
    return rows ? "" : rows.error().message;
  }

  /// All bytes of all rows.
  static std::vector<int> readAll(RowReader& rows) {
    std::vector<int> all;
    std::vector<std::byte> row(rows.format().bytesPerRow());
    for (int y = 0; y < rows.format().size.height; ++y) {
      if (!rows.readRow(row).ok()) throw std::runtime_error("no row");
      for (const std::byte byte : row) all.push_back(static_cast<int>(byte));
    }
    EXPECT_TRUE(rows.finish().ok());
    return all;
  }

  platform::FileDescriptor _descriptor;
};

std::vector<int> expected(const BmpKind& kind, int channels) {
  std::vector<int> all;
  for (int y = 0; y < kSize.height; ++y) {
    for (int x = 0; x < kSize.width; ++x) {
      const auto color = bmpColorAt(kind, x, y);
      all.insert(all.end(), color.begin(), color.begin() + channels);
    }
  }
  return all;
}

class EveryBmp : public BmpRowsTest, public testing::WithParamInterface<BmpKind> {};

}  // namespace

TEST_P(EveryBmp, hasThePixelsThatWerePainted) {
  const auto rows = openWell(paintedBmp(GetParam(), kSize));
  EXPECT_EQ(rows->format().size, kSize);
  EXPECT_EQ(rows->format().model, ColorModel::rgb);
  EXPECT_EQ(readAll(*rows), expected(GetParam(), rows->format().channels()));
  const BmpKind& kind = GetParam();
  const bool mayHave = kind.compression != 0 && (kind.bits == 32 || kind.bits < 16);
  EXPECT_EQ(rows->format().hasAlpha, mayHave);
}

TEST_P(EveryBmp, isRefusedWhereverItIsCutShort) {
  const std::string bytes = paintedBmp(GetParam(), {9, 5});
  openWell(bytes).reset();
  // The end of the last row of runs says as much as the mark that nothing follows.
  const bool hasRuns = GetParam().compression == 1 || GetParam().compression == 2;
  for (auto size = static_cast<off_t>(bytes.size()) - (hasRuns ? 2 : 0); size-- > 0;) {
    ASSERT_EQ(ftruncate(_descriptor.get(), size), 0);
    EXPECT_FALSE(openBmp(_descriptor.get()).ok()) << size;
  }
}

INSTANTIATE_TEST_SUITE_P(BmpRows, EveryBmp, testing::ValuesIn(bmpKinds()),
                         [](const auto& kind) { return kind.param.name; });

TEST_F(BmpRowsTest, tellTheFormatAndTheSize) {
  startBmp();
  const auto rows = openWell(paintedBmp({}, kSize));
  EXPECT_EQ(rows->facts().format, "BMP");
  EXPECT_EQ(rows->facts().storedSize, kSize);
  EXPECT_EQ(rows->facts().orientation, 1);
  EXPECT_EQ(rows->facts().profile, "");
}

TEST_F(BmpRowsTest, endAfterTheLast) {
  const auto rows = openWell(paintedBmp({}, kSize));
  readAll(*rows);
  std::vector<std::byte> row(rows->format().bytesPerRow());
  EXPECT_FALSE(rows->readRow(row).ok());
}

TEST_F(BmpRowsTest, areTransparentWhereRunsLeaveThemOut) {
  // Two pixels, a jump of one column and one row, one pixel, the end.
  const auto rows = openWell(bmpOfRuns({4, 2}, "\2\0\0\2\1\1\1\1\0\1"s));
  EXPECT_EQ(readAll(*rows), (std::vector<int>{0,   0,  0,  0,   0,   0,   0,  0,    //
                                              0,   0,  0,  0,   40,  160, 60, 255,  //
                                              200, 40, 40, 255, 200, 40,  40, 255,  //
                                              0,   0,  0,  0,   0,   0,   0,  0}));
}

TEST_F(BmpRowsTest, areRefusedWhereRunsEndTooEarly) {
  EXPECT_EQ(reason(bmpOfRuns({4, 3}, "\4\0\0\0\4\0\0\0"s)), "it is damaged (it is cut short)");
}

TEST_F(BmpRowsTest, endWhereRunsRunOver) {
  const auto rows = openWell(bmpOfRuns({2, 1}, "\xFF\0\0\x06......\0\2\xFF\0\xFF\1\0\0"s));
  EXPECT_EQ(readAll(*rows), (std::vector<int>{200, 40, 40, 255, 200, 40, 40, 255}));
}

TEST_F(BmpRowsTest, fromTheTopHaveNoRuns) {
  const BmpKind kind{.bits = 8, .compression = 1, .isFromTop = true};
  EXPECT_NE(reason(paintedBmp(kind, kSize)), "");
}

TEST_F(BmpRowsTest, leaveTheDescriptorToItsOwner) {
  openWell(paintedBmp({}, kSize)).reset();
  EXPECT_NE(fcntl(_descriptor.get(), F_GETFD), -1);
}

}  // namespace pelmora::decoder
