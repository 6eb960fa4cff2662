#pragma once

#include "platform/UserFolders.h"

#include <memory>

namespace pelmora::platform {
class Log;
}

namespace pelmora::host {

/// The user's folders, but for a user who has no pictures at all: then the pictures folder is one
/// with a few sample pictures, painted on the spot, which is said on standard error and in the log.
/// Thread: as the folders it stands for; looks once, at the first question.
class SampleFolders : public platform::UserFolders {
 public:
  /// `samples` is where the sample pictures go.
  SampleFolders(const platform::UserFolders& folders, FilePath samples, platform::Log& log);

  [[nodiscard]] std::vector<FilePath> pictures() const override;
  [[nodiscard]] std::vector<FilePath> caches() const override { return _folders.caches(); }

 private:
  [[nodiscard]] std::vector<FilePath> find() const;

  const platform::UserFolders& _folders;
  const FilePath _samples;
  platform::Log& _log;
  mutable std::vector<FilePath> _found;
  mutable bool _looked = false;
};

/// Whether a folder or one below it holds a file with a picture's suffix. Looks at no more than a
/// few thousand entries; a folder with more counts as having some.
[[nodiscard]] bool holdsPictures(const FilePath& folder);

}  // namespace pelmora::host
