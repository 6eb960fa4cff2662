#include "decoder/JpegRows.h"
#include "decoder/Resampler.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kLongestSide = 48;
constexpr std::int64_t kMostPixels = 4'000'000;  // more is only slower

/// One file in memory, written anew for each input.
int fileWith(const std::uint8_t* data, std::size_t size) {
  static const int file = memfd_create("input", MFD_CLOEXEC);
  if (file < 0 || ftruncate(file, 0) != 0 ||
      pwrite(file, data, size, 0) != static_cast<ssize_t>(size) || lseek(file, 0, SEEK_SET) != 0) {
    std::abort();
  }
  return file;
}

}  // namespace

// Any bytes as a JPEG, through the fast path to a small picture.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelmora::decoder;
  auto opened = openJpeg(fileWith(data, size), kLongestSide);
  if (!opened || !*opened) return 0;
  RowReader& rows = **opened;
  const RowFormat& format = rows.format();
  if (std::int64_t{format.size.width} * format.size.height > kMostPixels) return 0;
  Resampler resampler(format, fittedSize(rows.facts().storedSize, kLongestSide));
  std::vector<std::byte> row(format.bytesPerRow());
  for (int y = 0; y < format.size.height; ++y) {
    if (!rows.readRow(row)) return 0;
    resampler.push(row);
  }
  if (!rows.finish()) return 0;
  const Raster small = resampler.take();
  if (small.bytes.size() !=
      small.format.bytesPerRow() * static_cast<std::size_t>(small.format.size.height)) {
    std::abort();
  }
  return 0;
}
