#pragma once

#include "shared/FilePath.h"

#include <functional>
#include <vector>

class QWidget;

namespace pelmora::config {

/// Lets the user choose folders. Thread: main.
class FolderChooser {
 public:
  virtual ~FolderChooser() = default;

  /// Asks over the window `parent`, and returns at once. `chosen` is called once, when the question
  /// is closed: with the folders in the order of choice, or with none when the user thought better
  /// of it. It is never called once `parent` is gone.
  virtual void chooseFolders(QWidget* parent,
                             std::function<void(std::vector<FilePath>)> chosen) = 0;
};

}  // namespace pelmora::config
