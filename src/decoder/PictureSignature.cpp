#include "decoder/PictureSignature.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace pelmora::decoder {

namespace {

using namespace std::string_view_literals;

struct Signature {
  std::size_t offset;
  std::string_view bytes;
};

constexpr Signature kJpeg{0, "\xFF\xD8"sv};
constexpr Signature kBmp{0, "BM"sv};                 // as any text might begin
constexpr Signature kBmpHeaderSize{15, "\0\0\0"sv};  // its upper bytes
constexpr std::array kOthers{
    Signature{0, "\x89PNG\r\n\x1A\n"sv},
    Signature{0, "GIF8"sv},
    Signature{0, "II*\0"sv},  // TIFF, and with 64-bit offsets
    Signature{0, "MM\0*"sv},
    Signature{0, "II+\0"sv},
    Signature{0, "MM\0+"sv},
    Signature{8, "WEBP"sv},
    Signature{4, "ftyp"sv},      // HEIC and AVIF; films too, which libheif tells from them
    Signature{0, "\xFF\x0A"sv},  // JPEG XL, bare and in its container
    Signature{0, "\0\0\0\x0CJXL \r\n\x87\n"sv},
};

class Begin {
 public:
  explicit Begin(int descriptor)
      : _count(std::max<ssize_t>(pread(descriptor, _bytes.data(), _bytes.size(), 0), 0)) {}

  [[nodiscard]] bool is(const Signature& signature) const {
    const std::string_view read(_bytes.data(), static_cast<std::size_t>(_count));
    return read.substr(std::min(signature.offset, read.size())).starts_with(signature.bytes);
  }

 private:
  std::array<char, 18> _bytes{};
  ssize_t _count;
};

}  // namespace

bool hasPictureSignature(int descriptor) {
  const Begin begin(descriptor);
  return begin.is(kJpeg) || std::any_of(kOthers.begin(), kOthers.end(),
                                        [&](const Signature& each) { return begin.is(each); });
}

bool hasJpegSignature(int descriptor) { return Begin(descriptor).is(kJpeg); }

bool hasBmpSignature(int descriptor) {
  const Begin begin(descriptor);
  return begin.is(kBmp) && begin.is(kBmpHeaderSize);
}

}  // namespace pelmora::decoder
