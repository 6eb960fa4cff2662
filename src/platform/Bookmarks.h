#pragma once

#include "platform/PropertyList.h"
#include "shared/FilePath.h"
#include "shared/Result.h"

namespace pelmora::platform {

/// Opaque data from which a folder is found again, also after it moved. The bytes come from the
/// preferences and are untrusted. Thread: any.
class Bookmarks {
 public:
  virtual ~Bookmarks() = default;

  [[nodiscard]] virtual Result<plist::Bytes> make(const FilePath& folder) const = 0;
  /// The folder's present path. Never asks the user, and never mounts anything.
  [[nodiscard]] virtual Result<FilePath> resolve(const plist::Bytes& bookmark) const = 0;
};

}  // namespace pelmora::platform
