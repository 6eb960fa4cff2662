#include "decoder/PictureDecoder.h"

#include "decoder/BmpRows.h"
#include "decoder/JpegRows.h"
#include "decoder/PictureSignature.h"
#include "decoder/PremultipliedRows.h"
#include "decoder/Resampler.h"
#include "decoder/VideoColors.h"
#include "decoder/VipsRows.h"
#include "platform/DecodeProtocol.h"

#include <unistd.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace pelmora::decoder {

namespace {

using OpenedRows = Result<std::unique_ptr<RowReader>>;

OpenedRows openRows(int descriptor, int longestSide) {
  if (hasBmpSignature(descriptor)) return openBmp(descriptor);
  if (hasJpegSignature(descriptor)) {
    if (lseek(descriptor, 0, SEEK_SET) != 0) return Error{"it cannot be read"};
    OpenedRows rows = openJpeg(descriptor, longestSide);
    if (!rows || *rows) return rows;
  }
  if (lseek(descriptor, 0, SEEK_SET) != 0) return Error{"it cannot be read"};
  return openWithVips(descriptor, longestSide);
}

/// The size to show, which stands by the size in the file; a reduced load comes out a little off.
PixelSize targetSize(const RowReader& rows, int longestSide) {
  const PixelSize size = fittedSize(rows.facts().storedSize, longestSide);
  return {std::min(size.width, rows.format().size.width),
          std::min(size.height, rows.format().size.height)};
}

Result<Raster> readSmall(RowReader& rows, int longestSide) {
  Resampler resampler(rows.format(), targetSize(rows, longestSide));
  std::vector<std::byte> row(rows.format().bytesPerRow());
  for (int y = 0; y < rows.format().size.height; ++y) {
    if (Status status = rows.readRow(row); !status) return status.error();
    resampler.push(row);
  }
  if (Status status = rows.finish(); !status) return status.error();
  return resampler.take();
}

/// What HDR pictures have for a profile is meant for displays that show all of their range.
std::string profileToShow(std::string profile) {
  const VideoColors colors = videoColorsOf(profile);
  return colors.isHdr() ? profileOf(colors) : std::move(profile);
}

}  // namespace

PictureDecoder::PictureDecoder() : _colors(fallbackCmykProfile()) {}

Result<DecodedPicture> PictureDecoder::decode(int descriptor, int longestSide) {
  longestSide = std::clamp(longestSide, 1, platform::kMaxLongestSide);
  OpenedRows opened = openRows(descriptor, longestSide);
  if (!opened) return opened.error();
  std::unique_ptr<RowReader> rows = std::move(*opened);
  const bool hasAlpha = rows->format().hasAlpha;
  if (hasAlpha) rows = premultipliedRows(std::move(rows));
  Result<Raster> small = readSmall(*rows, longestSide);
  if (!small) return small.error();
  small->premultiplied = hasAlpha;
  PictureFacts facts = rows->facts();
  facts.profile = profileToShow(std::move(facts.profile));
  Result<Raster> raster = _colors.toSrgb(std::move(*small), facts.profile);
  if (!raster) return raster.error();
  return DecodedPicture{std::move(facts), std::move(*raster)};
}

}  // namespace pelmora::decoder
