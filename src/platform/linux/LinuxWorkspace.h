#pragma once

#include "platform/linux/LabelFile.h"
#include "platform/Workspace.h"

namespace pelmora::platform {

/// Labels by a fixed list, which a user's file extends or recolours; tags from the files' extended
/// attributes: those that desktops write, else those that came with a file from a Mac.
/// Thread: any; unchanged once made. Errors: a damaged labels file is logged, damaged tags are
/// none.
class LinuxWorkspace : public Workspace {
 public:
  /// Reads the labels. The log is used in the constructor alone.
  LinuxWorkspace(const FilePath& labelsFile, Log& log);

  [[nodiscard]] std::vector<std::string> fileLabels() const override;
  [[nodiscard]] std::vector<Color> fileLabelColors() const override;
  [[nodiscard]] std::vector<std::string> tagNames(const FilePath& file) const override;

 private:
  std::vector<Label> _labels;
};

}  // namespace pelmora::platform
