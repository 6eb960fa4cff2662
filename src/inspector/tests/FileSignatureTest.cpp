#include "inspector/FileSignature.h"

#include "platform/metadata/ContentTypes.h"

#include <gtest/gtest.h>

#include <string>

namespace pelmora::inspector {

namespace {

using std::string_literals::operator""s;

std::string mimeOf(const std::string& begin) {
  const auto* const bytes = reinterpret_cast<const std::uint8_t*>(begin.data());
  const auto signature = signatureOf({bytes, begin.size()});
  if (!signature) return "";
  EXPECT_NE(platform::metadata::contentTypeOfMime(signature->mime), nullptr) << signature->mime;
  return std::string(signature->mime);
}

/// The first box of a file, with its brand and the brands that it is compatible with.
std::string box(const std::string& brand, const std::string& others = "") {
  std::string text = "\0\0\0\0ftyp"s + brand + "\0\0\0\0"s + others;
  text[3] = static_cast<char>(text.size());
  return text +
         "\0\0\0\x20"
         "avifheic"s;  // no part of it any more
}

}  // namespace

TEST(FileSignature, tellsPicturesByTheirFirstBytes) {
  EXPECT_EQ(mimeOf("\xFF\xD8\xFF\xE0"), "image/jpeg");
  EXPECT_EQ(mimeOf("\x89PNG\r\n\x1A\n"), "image/png");
  EXPECT_EQ(mimeOf("GIF89a"), "image/gif");
  EXPECT_EQ(mimeOf("RIFF\1\0\0\0WEBPVP8 "s), "image/webp");
  EXPECT_EQ(mimeOf("MM\0*\0\0\0\x08"s), "image/tiff");
  EXPECT_EQ(mimeOf("II*\0\x08\0\0\0"s), "image/tiff");
  EXPECT_EQ(mimeOf("II*\0\x10\0\0\0CR\2\0"s), "image/x-canon-cr2");
  EXPECT_EQ(mimeOf("FUJIFILMCCD-RAW 0201"), "image/x-fuji-raf");
  EXPECT_EQ(mimeOf("\0\0\0\x0CJXL \r\n\x87\n"s), "image/jxl");
}

TEST(FileSignature, tellsHeifByItsBrands) {
  EXPECT_EQ(mimeOf(box("heic", "mif1heic")), "image/heic");
  EXPECT_EQ(mimeOf(box("mif1", "mif1heic")), "image/heic");
  EXPECT_EQ(mimeOf(box("mif1", "avifmif1")), "image/avif");
  EXPECT_EQ(mimeOf(box("mif1", "mif1miaf")), "image/heif");
  EXPECT_EQ(mimeOf(box("crx ", "isom")), "image/x-canon-cr3");
}

TEST(FileSignature, knowsNoFilmsAndNothingElse) {
  EXPECT_EQ(mimeOf(box("isom", "mp42")), "");
  EXPECT_EQ(mimeOf(box("qt  ")), "");
  EXPECT_EQ(mimeOf("RIFF\1\0\0\0AVI LIST"s), "");
  EXPECT_EQ(mimeOf("%PDF-1.4"), "");
  EXPECT_EQ(mimeOf(""), "");
}

TEST(FileSignature, readsNothingBeyondShortFiles) {
  for (const std::string& whole : {box("heic", "mif1heic"), "RIFF\1\0\0\0WEBP"s}) {
    for (std::size_t size = 0; size < 12; ++size) EXPECT_EQ(mimeOf(whole.substr(0, size)), "");
  }
}

}  // namespace pelmora::inspector
