#pragma once

#include "shared/FilePath.h"
#include "shared/Geometry.h"

#include <string>
#include <vector>

namespace pelmora::platform {

/// What the desktop knows about files beside their contents: labels (tags with a colour) and tags.
/// Thread: any.
class Workspace {
 public:
  virtual ~Workspace() = default;
  /// The label names and, in the same order, their colours.
  [[nodiscard]] virtual std::vector<std::string> fileLabels() const = 0;
  [[nodiscard]] virtual std::vector<Color> fileLabelColors() const = 0;
  /// The tags of a file, in its order; empty when it has none or they cannot be read.
  [[nodiscard]] virtual std::vector<std::string> tagNames(const FilePath& file) const = 0;
};

}  // namespace pelmora::platform
