#pragma once

#include "platform/metadata/ContentTypes.h"

#include <exiv2/image.hpp>

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pelmora::inspector {

/// A name of Exiv2, such as "Exif.Image.Make", looked up once. Errors: a name that Exiv2 does not
/// know is an error of the program, and throws.
struct EmbeddedKey {
  enum class Family { exif, iptc, xmp };

  explicit EmbeddedKey(std::string_view name);

  std::string name;
  Family family;
  std::uint32_t id = 0;  // of Exif and IPTC: the group and the tag
};

/// What is embedded in a file, found by keys without asking Exiv2 for each, which compares texts.
/// Thread: one. Points into the image, which outlives it.
class EmbeddedData {
 public:
  /// `mime`: of the image, where Exiv2 does not know better.
  EmbeddedData(const Exiv2::Image& image, std::string_view mime);

  /// The values of a key that is there once, or of all that are there, as of IPTC.
  [[nodiscard]] std::vector<const Exiv2::Value*> find(const EmbeddedKey& key) const;

  /// nullptr where it is not known.
  [[nodiscard]] const platform::metadata::ContentType* type() const { return _type; }
  [[nodiscard]] const Exiv2::Image& image() const { return _image; }
  /// Whether IPTC says that its texts are UTF-8.
  [[nodiscard]] bool isIptcUtf8() const { return _isIptcUtf8; }

 private:
  using ById = std::vector<std::pair<std::uint32_t, const Exiv2::Value*>>;
  using ByName = std::vector<std::pair<std::string, const Exiv2::Value*>>;

  void collectExif();
  void collectIptc();
  void collectXmp();

  const Exiv2::Image& _image;
  const platform::metadata::ContentType* _type;
  ById _exif;  // sorted, as are the next two
  ById _iptc;
  ByName _xmp;
  bool _isIptcUtf8 = false;
};

}  // namespace pelmora::inspector
