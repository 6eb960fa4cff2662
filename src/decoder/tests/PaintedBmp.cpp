#include "decoder/tests/PaintedBmp.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <stdexcept>

namespace pelmora::decoder {

namespace {

constexpr std::size_t kFileHeader = 14;
constexpr int kAlpha = 128;

using Color = std::array<int, 4>;
constexpr std::array<Color, 4> kColors{
    {{200, 40, 40, 255}, {40, 160, 60, 255}, {50, 60, 180, 255}, {240, 240, 240, 255}}};

std::string number(std::uint32_t value, std::size_t count = 4) {
  return withNumber(std::string(count, '\0'), 0, value, count);
}

std::size_t colorIndexAt(const BmpKind& kind, int x, int y) {
  // Runs of three, and a row like the one four above it: all in all no symmetry.
  return static_cast<std::size_t>(x / 3 + y + x * y / 16) % (kind.bits == 1 ? 2 : 4);
}

/// The nearest below of what so many bits can say, spread to 255 again.
int spread(int value, int bits) {
  const int kept = value >> (8 - bits);
  return kept << (8 - bits) | kept >> (2 * bits - 8);
}

std::uint32_t maskedPixel(const BmpKind& kind, const Color& color) {
  std::uint32_t pixel = 0;
  for (std::size_t i = 0; i < color.size(); ++i) {
    const std::uint32_t mask = kind.masks[i];
    if (mask == 0) continue;
    const int value = i == 3 ? kAlpha : color[i];
    pixel |= static_cast<std::uint32_t>(value >> (8 - std::popcount(mask)))
             << std::countr_zero(mask);
  }
  return pixel;
}

std::uint32_t pixelAt(const BmpKind& kind, int x, int y) {
  const std::size_t index = colorIndexAt(kind, x, y);
  if (kind.bits <= 8) return static_cast<std::uint32_t>(index);
  const Color& color = kColors[index];
  if (kind.compression == 3) return maskedPixel(kind, color);
  const auto bits = [&color](std::size_t i, int dropped) {
    return static_cast<std::uint32_t>(color[i] >> dropped);
  };
  if (kind.bits == 16) return bits(0, 3) << 10 | bits(1, 3) << 5 | bits(2, 3);
  return bits(0, 0) << 16 | bits(1, 0) << 8 | bits(2, 0);
}

std::string plainRow(const BmpKind& kind, int width, int y) {
  const auto bits = static_cast<std::size_t>(kind.bits);
  std::string row((static_cast<std::size_t>(width) * bits + 31) / 32 * 4, '\0');
  for (int x = 0; x < width; ++x) {
    const std::uint32_t pixel = pixelAt(kind, x, y);
    const std::size_t at = static_cast<std::size_t>(x) * bits;
    if (bits < 8) {
      row[at / 8] = static_cast<char>(row[at / 8] | pixel << (8 - bits - at % 8));
    } else {
      row = withNumber(std::move(row), at / 8, pixel, bits / 8);
    }
  }
  return row;
}

/// Two pixels as a run of 4 bits a pixel has them, one as a run of 8 bits.
char paired(const BmpKind& kind, std::uint32_t first, std::uint32_t second) {
  return static_cast<char>(kind.bits == 8 ? first : first << 4 | second);
}

/// Runs in rows of an even number, pixels as they come in the others.
std::string rowOfRuns(const BmpKind& kind, int width, int y) {
  constexpr int kMostTogether = 9;
  std::string row;
  for (int x = 0; x < width;) {
    const std::uint32_t pixel = pixelAt(kind, x, y);
    int count = 1;
    while (x + count < width && pixelAt(kind, x + count, y) == pixel) ++count;
    const int left = std::min(width - x, kMostTogether);
    if (y % 2 == 0 || left < 3) {
      row += {static_cast<char>(count), paired(kind, pixel, pixel)};
    } else {
      count = left;
      row += {'\0', static_cast<char>(count)};
      const std::size_t begin = row.size();
      for (int i = 0; i < count; i += kind.bits == 8 ? 1 : 2) {
        row += paired(kind, pixelAt(kind, x + i, y), pixelAt(kind, x + i + 1, y));
      }
      row.append((row.size() - begin) % 2, '\0');
    }
    x += count;
  }
  return row + std::string(2, '\0');
}

std::string rowsOf(const BmpKind& kind, const PixelSize& size) {
  const bool hasRuns = kind.compression == 1 || kind.compression == 2;
  std::string rows;
  for (int i = 0; i < size.height; ++i) {
    const int y = kind.isFromTop ? i : size.height - 1 - i;
    rows += hasRuns ? rowOfRuns(kind, size.width, y) : plainRow(kind, size.width, y);
  }
  return hasRuns ? rows + std::string{'\0', '\1'} : rows;
}

std::string headerOf(const BmpKind& kind, const PixelSize& size) {
  const auto width = static_cast<std::uint32_t>(size.width);
  const auto height = static_cast<std::uint32_t>(kind.isFromTop ? -size.height : size.height);
  const auto bits = static_cast<std::uint32_t>(kind.bits);
  std::string header = number(kind.header);
  if (kind.header == 12) {
    return header + number(width, 2) + number(height, 2) + number(1, 2) + number(bits, 2);
  }
  header += number(width) + number(height) + number(1, 2) + number(bits, 2);
  header += number(kind.compression);
  header.resize(40);
  if (kind.compression == 3 && kind.header != 64) {
    for (const std::uint32_t mask : kind.masks) header += number(mask);
  }
  header.resize(kind.compression == 3 && kind.header == 40 ? 52 : kind.header);
  return header;
}

std::string colorTable(const BmpKind& kind) {
  std::string table;
  for (int i = 0; kind.bits <= 8 && i < 1 << kind.bits; ++i) {
    const Color& color = kColors[static_cast<std::size_t>(i % 4)];
    for (std::size_t channel = 3; channel-- > 0;) table += static_cast<char>(color[channel]);
    if (kind.header != 12) table += '\0';
  }
  return table;
}

std::string bmpOf(const std::string& headerAndTable, std::size_t gap, const std::string& rows) {
  const std::size_t offset = kFileHeader + headerAndTable.size() + gap;
  return "BM" + number(static_cast<std::uint32_t>(offset + rows.size())) + number(0) +
         number(static_cast<std::uint32_t>(offset)) + headerAndTable + std::string(gap, 'x') + rows;
}

}  // namespace

const std::vector<BmpKind>& bmpKinds() {
  static const std::vector<BmpKind> kinds{
      {.name = "bits1", .bits = 1},
      {.name = "bits4", .bits = 4},
      {.name = "bits8", .bits = 8},
      {.name = "bits8FromTop", .bits = 8, .isFromTop = true},
      {.name = "bits8WithGap", .bits = 8, .gap = 10},
      {.name = "runs8", .bits = 8, .compression = 1},
      {.name = "runs4", .bits = 4, .compression = 2},
      {.name = "runs8WithGap", .bits = 8, .compression = 1, .gap = 3},
      {.name = "bits16", .bits = 16},
      {.name = "masks565", .bits = 16, .compression = 3, .masks = {0xF800, 0x7E0, 0x1F}},
      {.name = "bits24"},
      {.name = "bits24FromTop", .isFromTop = true},
      {.name = "bits24WithGap", .gap = 6},
      {.name = "bits24Version5", .header = 124},
      {.name = "bits32", .bits = 32},
      {.name = "masks32",
       .bits = 32,
       .compression = 3,
       .masks = {0xFF, 0xFF00, 0xFF0000},
       .gap = 5},
      {.name = "alphaVersion3",
       .bits = 32,
       .compression = 3,
       .header = 56,
       .masks = {0xFF0000, 0xFF00, 0xFF, 0xFF000000}},
      {.name = "alphaVersion4FromTop",
       .bits = 32,
       .compression = 3,
       .header = 108,
       .isFromTop = true,
       .masks = {0xFF000000, 0xFF0000, 0xFF00, 0xFF}},
      {.name = "alphaVersion5",
       .bits = 32,
       .compression = 3,
       .header = 124,
       .masks = {0xFF0000, 0xFF00, 0xFF, 0xFF000000},
       .gap = 4},
      {.name = "os2Bits1", .bits = 1, .header = 12},
      {.name = "os2Bits4", .bits = 4, .header = 12},
      {.name = "os2Bits8", .bits = 8, .header = 12},
      {.name = "os2Bits24", .header = 12},
      {.name = "os2Version2", .bits = 8, .header = 64}};
  return kinds;
}

std::string paintedBmp(const BmpKind& kind, const PixelSize& size) {
  return bmpOf(headerOf(kind, size) + colorTable(kind), kind.gap, rowsOf(kind, size));
}

Color bmpColorAt(const BmpKind& kind, int x, int y) {
  Color color = kColors[colorIndexAt(kind, x, y)];
  for (std::size_t i = 0; i < 3 && kind.bits == 16; ++i) {
    const int bits = kind.compression == 3 ? std::popcount(kind.masks[i]) : 5;
    color[i] = spread(color[i], bits);
  }
  if (kind.masks[3] != 0) color[3] = kAlpha;
  return color;
}

std::string bmpOfRuns(const PixelSize& size, const std::string& rows) {
  const BmpKind kind{.bits = 8, .compression = 1};
  return bmpOf(headerOf(kind, size) + colorTable(kind), 0, rows);
}

platform::FileDescriptor fileOf(const std::string& bytes) {
  platform::FileDescriptor file(memfd_create("picture", MFD_CLOEXEC));
  if (pwrite(file.get(), bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("no file in memory");
  }
  return file;
}

std::string withNumber(std::string bytes, std::size_t offset, std::uint32_t number,
                       std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    bytes.at(offset + i) = static_cast<char>(number >> (8 * i));
  }
  return bytes;
}

}  // namespace pelmora::decoder
