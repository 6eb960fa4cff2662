#pragma once

#include "inspector/AttributeReader.h"
#include "platform/metadata/FileMetadata.h"
#include "shared/Result.h"

namespace pelmora::inspector {

/// Reads what is embedded in a file by Exiv2. What is no picture by its first bytes, or too large,
/// has nothing embedded; of one that is damaged what could be read is given. Thread: one in the
/// process, as Exiv2's reading of XMP is not made for more. Errors: one short line; nothing is
/// thrown, but what a hostile file does to a library may end the process.
class MetadataReader {
 public:
  /// Prepares the libraries: everything that they read from files is read here, the local time zone
  /// included.
  MetadataReader();
  ~MetadataReader();
  MetadataReader(const MetadataReader&) = delete;
  MetadataReader& operator=(const MetadataReader&) = delete;

  [[nodiscard]] Result<platform::metadata::FileMetadata> read(int descriptor) const;

 private:
  const AttributeReader _attributes;
};

}  // namespace pelmora::inspector
