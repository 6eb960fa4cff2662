#include "inspector/MetadataReader.h"

#include "inspector/FileBytes.h"
#include "inspector/FileSignature.h"
#include "platform/metadata/ContentTypes.h"
#include "platform/metadata/MetadataProtocol.h"
#include "platform/PrintableLine.h"

#include <sys/stat.h>
#include <exiv2/bmffimage.hpp>
#include <exiv2/error.hpp>
#include <exiv2/exif.hpp>
#include <exiv2/image.hpp>
#include <exiv2/iptc.hpp>
#include <exiv2/xmp_exiv2.hpp>

#include <ctime>
#include <exception>
#include <new>
#include <optional>
#include <span>
#include <string>

namespace pelmora::inspector {

namespace {

using platform::metadata::FileMetadata;

constexpr std::size_t kLongestReason = 200;

Error describe(const std::exception& error) {
  return Error{platform::printableLine(std::string(error.what()).substr(0, kLongestReason))};
}

/// What an image has that is worth keeping after an error.
bool hasAnything(const Exiv2::Image& image) {
  return !image.exifData().empty() || !image.iptcData().empty() || !image.xmpData().empty();
}

Result<FileMetadata> readPicture(std::span<const std::uint8_t> bytes, std::string_view mime,
                                 const AttributeReader& attributes) {
  const auto image = Exiv2::ImageFactory::open(bytes.data(), static_cast<long>(bytes.size()));
  if (!image.get()) return Error{"it is not as its first bytes say"};
  try {
    image->readMetadata();
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& error) {
    if (!hasAnything(*image)) return describe(error);
  }
  return attributes.read(EmbeddedData(*image, mime));
}

/// The type, and nothing else.
FileMetadata typeAlone(std::string_view mime) {
  FileMetadata metadata;
  const auto* const type = platform::metadata::contentTypeOfMime(mime);
  if (!type) return metadata;
  metadata.set("kMDItemKind", {std::string(type->kind)});
  metadata.set("kMDItemContentType", {std::string(type->name)});
  std::vector<platform::predicate::Constant> tree;
  for (const std::string_view each : contentTypeTree(*type)) tree.emplace_back(std::string(each));
  metadata.set("kMDItemContentTypeTree", std::move(tree));
  return metadata;
}

Result<FileMetadata> readFile(int descriptor, const AttributeReader& attributes) {
  struct stat facts {};
  if (fstat(descriptor, &facts) != 0) return Error{"it cannot be examined"};
  if (!S_ISREG(facts.st_mode)) return Error{"it is not a file"};
  if (facts.st_size == 0 || facts.st_size > platform::metadata::kMaxInspectedBytes) {
    return FileMetadata();
  }
  const FileBytes bytes(descriptor, static_cast<std::size_t>(facts.st_size));
  if (bytes.all().empty()) return Error{"it cannot be read"};
  const std::optional<FileSignature> signature = signatureOf(bytes.all());
  if (!signature) return FileMetadata();
  if (!signature->isReadable) return typeAlone(signature->mime);
  return readPicture(bytes.all(), signature->mime, attributes);
}

}  // namespace

MetadataReader::MetadataReader() {
  tzset();
  Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
  Exiv2::enableBMFF(true);
  Exiv2::XmpParser::initialize();
}

MetadataReader::~MetadataReader() { Exiv2::XmpParser::terminate(); }

Result<FileMetadata> MetadataReader::read(int descriptor) const {
  try {
    return readFile(descriptor, _attributes);
  } catch (const std::bad_alloc&) {
    return Error{"it needs more than " + std::to_string(platform::metadata::kInspectorMegabytes) +
                 " MB of memory to read"};
  } catch (const std::exception& error) {
    return describe(error);
  }
}

}  // namespace pelmora::inspector
