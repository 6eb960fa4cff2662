#include "decoder/JpegMetadata.h"

#include "decoder/ExifOrientation.h"

#include <string_view>

namespace pelmora::decoder {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kExif = "Exif\0\0"sv;
constexpr std::string_view kProfile = "ICC_PROFILE\0"sv;

std::string_view textOf(std::span<const std::uint8_t> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

void JpegMetadata::takeApp1(std::span<const std::uint8_t> segment) {
  if (_exif.empty() && textOf(segment).starts_with(kExif)) _exif = textOf(segment);
}

void JpegMetadata::takeApp2(std::span<const std::uint8_t> segment) {
  std::string_view text = textOf(segment);
  if (!text.starts_with(kProfile) || text.size() < kProfile.size() + 2 || _isProfileBroken) return;
  const std::size_t number = segment[kProfile.size()];
  const int count = segment[kProfile.size() + 1];
  text.remove_prefix(kProfile.size() + 2);
  _profileBytes += text.size();
  _isProfileBroken = number == 0 || static_cast<int>(number) > count || text.empty() ||
                     (_pieceCount != 0 && _pieceCount != count) || !_pieces[number].empty() ||
                     _profileBytes > kLargestProfile;
  _pieceCount = count;
  if (!_isProfileBroken) _pieces[number] = text;
}

int JpegMetadata::orientation() const {
  return exifOrientation({reinterpret_cast<const unsigned char*>(_exif.data()), _exif.size()});
}

std::string JpegMetadata::profile() const {
  std::string whole;
  if (_isProfileBroken) return whole;
  whole.reserve(_profileBytes);
  for (int number = 1; number <= _pieceCount; ++number) {
    const std::string& piece = _pieces[static_cast<std::size_t>(number)];
    if (piece.empty()) return {};
    whole += piece;
  }
  return whole;
}

}  // namespace pelmora::decoder
