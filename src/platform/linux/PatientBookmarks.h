#pragma once

#include "platform/Bookmarks.h"
#include "platform/linux/PatientFiles.h"

#include <memory>

namespace pelmora::platform {

/// Bookmarks of folders that may be on another machine: one whose server is gone cannot be resolved
/// or made, and is waited for no longer than other files of its kind. Thread: any. Ownership: the
/// files outlive it; what hangs keeps `bookmarks`.
class PatientBookmarks : public Bookmarks {
 public:
  PatientBookmarks(std::shared_ptr<const Bookmarks> bookmarks, const PatientFiles& files);

  [[nodiscard]] Result<plist::Bytes> make(const FilePath& folder) const override;
  [[nodiscard]] Result<FilePath> resolve(const plist::Bytes& bookmark) const override;

 private:
  const std::shared_ptr<const Bookmarks> _bookmarks;
  const PatientFiles& _files;
};

}  // namespace pelmora::platform
