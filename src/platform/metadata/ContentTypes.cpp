#include "platform/metadata/ContentTypes.h"

#include <algorithm>
#include <array>
#include <string>

namespace pelmora::platform::metadata {

namespace {

constexpr std::string_view kImage = "public.image";
constexpr std::string_view kRaw = "public.camera-raw-image";
constexpr std::string_view kMovie = "public.movie";
constexpr std::string_view kHeif = "public.heif-standard";

constexpr std::array kTypes = {
    // Pictures.
    ContentType{"public.jpeg", "JPEG image", kImage, "image/jpeg", "jpg jpeg jpe jfif"},
    ContentType{"public.png", "PNG image", kImage, "image/png", "png"},
    ContentType{"public.heic", "HEIF Image", kHeif, "image/heic image/heic-sequence", "heic heics"},
    ContentType{"public.heif", "HEIF Image", kHeif, "image/heif image/heif-sequence",
                "heif heifs hif"},
    ContentType{"public.avif", "AVIF Image", kHeif, "image/avif", "avif"},
    ContentType{"org.webmproject.webp", "WebP Image", kImage, "image/webp", "webp"},
    ContentType{"public.jpeg-xl", "JPEG XL Image", kImage, "image/jxl", "jxl"},
    ContentType{"public.jpeg-2000", "JPEG 2000 image", kImage, "image/jp2", "jp2 jpf jpx j2k j2c"},
    ContentType{"public.tiff", "TIFF image", kImage, "image/tiff", "tif tiff"},
    ContentType{"com.compuserve.gif", "GIF Image", kImage, "image/gif", "gif"},
    ContentType{"com.microsoft.bmp", "Windows BMP image", kImage,
                "image/bmp image/x-ms-bmp image/x-bmp", "bmp dib"},
    ContentType{"com.microsoft.ico", "Windows icon image", kImage, "image/vnd.microsoft.icon",
                "ico"},
    ContentType{"com.adobe.photoshop-image", "Adobe Photoshop file", kImage,
                "image/x-photoshop image/vnd.adobe.photoshop", "psd"},
    ContentType{"com.truevision.tga-image", "TGA image", kImage, "image/targa image/x-tga", "tga"},
    ContentType{"public.svg-image", "SVG document", kImage, "image/svg+xml", "svg"},
    ContentType{"com.adobe.encapsulated-postscript", "Encapsulated PostScript", kImage,
                "application/postscript", "eps"},
    // Of cameras.
    ContentType{"com.adobe.raw-image", "Adobe DNG raw image", kRaw, "image/x-adobe-dng", "dng"},
    ContentType{"com.canon.cr2-raw-image", "Canon CR2 raw image", kRaw, "image/x-canon-cr2", "cr2"},
    ContentType{"com.canon.cr3-raw-image", "Canon CR3 raw image", kRaw, "image/x-canon-cr3", "cr3"},
    ContentType{"com.canon.crw-raw-image", "Canon CRW raw image", kRaw, "image/x-canon-crw", "crw"},
    ContentType{"com.nikon.raw-image", "Nikon raw image", kRaw, "image/x-nikon-nef", "nef"},
    ContentType{"com.nikon.nrw-raw-image", "Nikon NRW raw image", kRaw, "image/x-nikon-nrw", "nrw"},
    ContentType{"com.sony.arw-raw-image", "Sony ARW raw image", kRaw, "image/x-sony-arw", "arw"},
    ContentType{"com.sony.sr2-raw-image", "Sony SR2 raw image", kRaw, "image/x-sony-sr2", "sr2"},
    ContentType{"com.sony.raw-image", "Sony raw image", kRaw, "image/x-sony-srf", "srf"},
    ContentType{"com.fuji.raw-image", "Fuji raw image", kRaw, "image/x-fuji-raf", "raf"},
    ContentType{"com.olympus.or-raw-image", "Olympus raw image", kRaw, "image/x-olympus-orf",
                "orf"},
    ContentType{"com.panasonic.rw2-raw-image", "Panasonic RW2 raw image", kRaw,
                "image/x-panasonic-rw2", "rw2"},
    ContentType{"com.panasonic.raw-image", "Panasonic raw image", kRaw, "image/x-panasonic-raw",
                "raw"},
    ContentType{"com.pentax.raw-image", "Pentax raw image", kRaw, "image/x-pentax-pef", "pef"},
    ContentType{"com.samsung.raw-image", "Samsung raw image", kRaw, "image/x-samsung-srw", "srw"},
    ContentType{"com.konicaminolta.raw-image", "Minolta raw image", kRaw, "image/x-minolta-mrw",
                "mrw"},
    ContentType{"com.epson.raw-image", "Epson raw image", kRaw, "image/x-epson-erf", "erf"},
    ContentType{"com.kodak.raw-image", "Kodak raw image", kRaw, "image/x-kodak-dcr", "dcr"},
    ContentType{"com.hasselblad.3fr-raw-image", "Hasselblad raw image", kRaw,
                "image/x-hasselblad-3fr", "3fr"},
    ContentType{"com.leafamerica.raw-image", "Leaf raw image", kRaw, "image/x-leaf-mos", "mos"},
    ContentType{"com.leica.rwl-raw-image", "Leica RWL raw image", kRaw, "image/x-leica-rwl", "rwl"},
    // Films.
    ContentType{"com.apple.quicktime-movie", "QuickTime movie", kMovie, "video/quicktime",
                "mov qt"},
    ContentType{"public.mpeg-4", "MPEG-4 movie", kMovie, "video/mp4", "mp4 mp4v"},
    ContentType{"com.apple.m4v-video", "Apple MPEG-4 movie", kMovie, "video/x-m4v", "m4v"},
    ContentType{"public.3gpp", "3GPP movie", kMovie, "video/3gpp", "3gp 3gpp"},
    ContentType{"public.mpeg", "MPEG movie", kMovie, "video/mpeg", "mpg mpeg"},
    ContentType{"public.avi", "AVI movie", kMovie, "video/x-msvideo video/riff", "avi"},
    ContentType{"org.matroska.mkv", "Matroska movie", kMovie, "video/x-matroska video/matroska",
                "mkv"},
    ContentType{"org.webmproject.webm", "WebM movie", kMovie, "video/webm", "webm"},
    ContentType{"com.microsoft.windows-media-wmv", "Windows Media movie", kMovie,
                "video/x-ms-wmv video/asf", "wmv"},
    // Others that lie among pictures.
    ContentType{"com.adobe.pdf", "PDF document", "public.composite-content", "application/pdf",
                "pdf"},
    ContentType{"public.plain-text", "Plain text document", "public.text", "text/plain", "txt"},
    ContentType{"public.xml", "XML document", "public.text", "application/xml text/xml", "xml"},
    ContentType{"com.adobe.xmp", "XMP document", "public.xml", "application/rdf+xml", "xmp"},
};

struct Parent {
  std::string_view name;
  std::string_view parent;
};

/// What no file is alone.
constexpr std::array kParents = {
    Parent{kRaw, kImage},
    Parent{kHeif, kImage},
    Parent{kImage, "public.data"},
    Parent{kMovie, "public.audiovisual-content"},
    Parent{"public.audiovisual-content", "public.data"},
    Parent{"public.composite-content", "public.data"},
    Parent{"public.xml", "public.text"},
    Parent{"public.text", "public.data"},
    Parent{"public.data", "public.item"},
    Parent{"public.item", "public.content"},
};

/// Whether a word is one of those in a list with blanks between.
bool hasWord(std::string_view list, std::string_view word) {
  while (!list.empty()) {
    const std::size_t end = std::min(list.find(' '), list.size());
    if (list.substr(0, end) == word) return true;
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return false;
}

const ContentType* typeWith(std::string_view word, std::string_view ContentType::*list) {
  const auto found = std::find_if(kTypes.begin(), kTypes.end(), [&](const ContentType& type) {
    return hasWord(type.*list, word);
  });
  return found == kTypes.end() ? nullptr : &*found;
}

}  // namespace

std::span<const ContentType> contentTypes() { return kTypes; }

const ContentType* contentTypeOfMime(std::string_view mime) {
  return typeWith(mime, &ContentType::mimes);
}

const ContentType* contentTypeOfName(std::string_view fileName) {
  const std::size_t dot = fileName.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return nullptr;
  std::string suffix(fileName.substr(dot + 1));
  for (char& each : suffix) {
    if (each >= 'A' && each <= 'Z') each = static_cast<char>(each - 'A' + 'a');
  }
  return typeWith(suffix, &ContentType::suffixes);
}

std::vector<std::string_view> contentTypeTree(const ContentType& type) {
  std::vector<std::string_view> tree{type.name};
  for (std::string_view next = type.parent; !next.empty();) {
    tree.push_back(next);
    const auto above = std::find_if(kParents.begin(), kParents.end(),
                                    [next](const Parent& each) { return each.name == next; });
    next = above == kParents.end() ? std::string_view() : above->parent;
  }
  return tree;
}

}  // namespace pelmora::platform::metadata
