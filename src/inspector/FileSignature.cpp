#include "inspector/FileSignature.h"

#include <algorithm>
#include <array>

namespace pelmora::inspector {

namespace {

using std::string_view_literals::operator""sv;

struct Magic {
  std::string_view bytes;
  FileSignature signature;
};

/// The longer first where one is the begin of another.
constexpr std::array kMagics = {
    Magic{"\xFF\xD8\xFF"sv, {"image/jpeg"}},
    Magic{"\x89PNG\r\n\x1A\n"sv, {"image/png"}},
    Magic{"GIF87a"sv, {"image/gif"}},
    Magic{"GIF89a"sv, {"image/gif"}},
    Magic{"BM"sv, {"image/bmp"}},
    Magic{"8BPS"sv, {"image/vnd.adobe.photoshop"}},
    Magic{"II*\0\x10\0\0\0CR"sv, {"image/x-canon-cr2"}},
    Magic{"II*\0"sv, {"image/tiff"}},
    Magic{"MM\0*"sv, {"image/tiff"}},
    Magic{"II\x1A\0\0\0HEAPCCDR"sv, {"image/x-canon-crw"}},
    Magic{"IIRO"sv, {"image/x-olympus-orf"}},
    Magic{"IIRS"sv, {"image/x-olympus-orf"}},
    Magic{"MMOR"sv, {"image/x-olympus-orf"}},
    Magic{"IIU\0"sv, {"image/x-panasonic-rw2"}},
    Magic{"FUJIFILMCCD-RAW"sv, {"image/x-fuji-raf"}},
    Magic{"\0MRM"sv, {"image/x-minolta-mrw"}},
    Magic{"\0\0\0\x0CjP  \r\n\x87\n"sv, {"image/jp2"}},
    Magic{"\0\0\0\x0CJXL \r\n\x87\n"sv, {"image/jxl"}},
    Magic{"\xFF\x0A"sv, {"image/jxl", false}},
};

struct Brand {
  std::string_view name;
  std::string_view mime;
};

/// The more telling first: files name several.
constexpr std::array kBrands = {
    Brand{"avif", "image/avif"}, Brand{"avis", "image/avif"}, Brand{"heic", "image/heic"},
    Brand{"heix", "image/heic"}, Brand{"heim", "image/heic"}, Brand{"heis", "image/heic"},
    Brand{"hevc", "image/heic"}, Brand{"hevx", "image/heic"}, Brand{"crx ", "image/x-canon-cr3"},
    Brand{"mif1", "image/heif"}, Brand{"mif2", "image/heif"}, Brand{"msf1", "image/heif"},
};

bool isOneOfBrands(std::string_view text, std::string_view brand) {
  // After the size and the type of the box: the brand, a version, and compatible brands.
  for (std::size_t at = 8; at + 4 <= text.size(); at += 4) {
    if (at != 12 && text.substr(at, 4) == brand) return true;
  }
  return false;
}

/// HEIF and its kin, and the films that begin alike.
std::optional<FileSignature> signatureOfBox(std::string_view text) {
  if (text.size() < 16 || text.substr(4, 4) != "ftyp") return std::nullopt;
  const auto size = static_cast<std::size_t>(static_cast<std::uint8_t>(text[3]));
  if (text.substr(0, 3) == "\0\0\0"sv) text = text.substr(0, std::max<std::size_t>(size, 12));
  for (const Brand& brand : kBrands) {
    if (isOneOfBrands(text, brand.name)) return FileSignature{brand.mime};
  }
  return std::nullopt;
}

}  // namespace

std::optional<FileSignature> signatureOf(std::span<const std::uint8_t> begin) {
  const std::string_view text(reinterpret_cast<const char*>(begin.data()),
                              std::min(begin.size(), kSignatureBytes));
  for (const Magic& magic : kMagics) {
    if (text.starts_with(magic.bytes)) return magic.signature;
  }
  if (text.starts_with("RIFF") && text.size() >= 12 && text.substr(8, 4) == "WEBP") {
    return FileSignature{"image/webp"};
  }
  return signatureOfBox(text);
}

}  // namespace pelmora::inspector
