#pragma once

#include "platform/linux/LabelFile.h"
#include "platform/Workspace.h"

#include <functional>

namespace pelmora::platform {

class PatientFiles;

/// Labels by a fixed list, which a user's file extends or recolours; tags from the files' extended
/// attributes (those that desktops write, else those that came with a file from a Mac), else those
/// that are embedded in the files. Thread: any; unchanged once made. Errors: a damaged labels file
/// is logged, damaged tags are none.
class LinuxWorkspace : public Workspace {
 public:
  /// Reads the tags that are embedded in a file. Called on any thread.
  using ReadEmbedded = std::function<std::vector<std::string>(const FilePath& file)>;

  /// Reads the labels. The log is used in the constructor alone. `files`, by which to look at
  /// pictures, outlives it; null: directly.
  LinuxWorkspace(const FilePath& labelsFile, Log& log, ReadEmbedded readEmbedded,
                 const PatientFiles* files = nullptr);

  [[nodiscard]] std::vector<std::string> fileLabels() const override;
  [[nodiscard]] std::vector<Color> fileLabelColors() const override;
  [[nodiscard]] std::vector<std::string> tagNames(const FilePath& file) const override;

 private:
  std::vector<Label> _labels;
  const ReadEmbedded _readEmbedded;
  const PatientFiles* const _files;
};

}  // namespace pelmora::platform
