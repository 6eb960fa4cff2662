#pragma once

#include "platform/Workspace.h"

#include <map>

namespace pelmora::platform {

/// Labels, colours and tags that a test chooses; none at first. Thread: any, once chosen.
class FakeWorkspace : public Workspace {
 public:
  [[nodiscard]] std::vector<std::string> fileLabels() const override { return labels; }
  [[nodiscard]] std::vector<Color> fileLabelColors() const override { return colors; }
  [[nodiscard]] std::vector<std::string> tagNames(const FilePath& file) const override;

  std::vector<std::string> labels;
  std::vector<Color> colors;  // may differ in number, as no desktop's should
  std::map<FilePath, std::vector<std::string>> tags;
};

}  // namespace pelmora::platform
