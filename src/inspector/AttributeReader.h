#pragma once

#include "inspector/DerivedAttributes.h"
#include "inspector/EmbeddedData.h"
#include "platform/metadata/FileMetadata.h"

#include <cstddef>
#include <vector>

namespace pelmora::inspector {

/// The table of attributes (`platform/metadata/AttributeTable.h`) made ready for reading: of each
/// row that may be embedded its keys, and what it is derived from otherwise.
/// Thread: any, once made. Errors: a key in the table that Exiv2 does not know throws when made.
class AttributeReader {
 public:
  AttributeReader();

  [[nodiscard]] platform::metadata::FileMetadata read(const EmbeddedData& data) const;

 private:
  struct Row {
    std::size_t position = 0;
    std::vector<EmbeddedKey> keys;
    DerivedReader derived = nullptr;
  };

  std::vector<Row> _rows;
};

/// The keys of a row: its words that are not in brackets.
[[nodiscard]] std::vector<EmbeddedKey> keysIn(std::string_view readFrom);

}  // namespace pelmora::inspector
