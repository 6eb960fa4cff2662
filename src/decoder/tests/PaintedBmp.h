#pragma once

#include "platform/FileDescriptor.h"
#include "shared/Geometry.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace pelmora::decoder {

/// One way in which a BMP may be written.
struct BmpKind {
  std::string name = "bits24";  // of letters and digits
  int bits = 24;
  std::uint32_t compression = 0;  // 1, 2: runs of 8 or 4 bits; 3: masks
  std::uint32_t header = 40;      // bytes
  bool isFromTop = false;
  std::array<std::uint32_t, 4> masks{};  // red, green, blue, alpha
  std::size_t gap = 0;                   // bytes before the rows that belong to nothing
};

/// A few of each kind that is read.
[[nodiscard]] const std::vector<BmpKind>& bmpKinds();

/// A BMP of red, green, blue and white, strewn so that every turn and shift of a column shows; of
/// red and green alone where one bit must do. Half transparent where there is a mask for it.
[[nodiscard]] std::string paintedBmp(const BmpKind& kind, const PixelSize& size);

/// What `paintedBmp` paints at a place, as that kind can store it: red, green, blue, alpha.
[[nodiscard]] std::array<int, 4> bmpColorAt(const BmpKind& kind, int x, int y);

/// A BMP with colours of 8 bits, red and green, and these bytes for rows.
[[nodiscard]] std::string bmpOfRuns(const PixelSize& size, const std::string& rows);

/// A file in memory, at its begin. Errors: thrown, which fails the test.
[[nodiscard]] platform::FileDescriptor fileOf(const std::string& bytes);

/// The bytes with a number in them, the lowest byte first.
[[nodiscard]] std::string withNumber(std::string bytes, std::size_t offset, std::uint32_t number,
                                     std::size_t count = 4);

}  // namespace pelmora::decoder
