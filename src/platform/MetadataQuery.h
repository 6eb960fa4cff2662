#pragma once

#include <string>
#include <vector>

namespace pelmora::platform {

/// A live search over file metadata in a set of folders. Thread: main, but for `isStarted`.
class MetadataQuery {
 public:
  virtual ~MetadataQuery() = default;
  virtual void start() = 0;
  virtual void stop() = 0;
  /// Folder paths, or a placeholder that names no folder.
  virtual void setSearchScopes(std::vector<std::string> scopes) = 0;
  [[nodiscard]] virtual std::vector<std::string> searchScopes() const = 0;
};

}  // namespace pelmora::platform
