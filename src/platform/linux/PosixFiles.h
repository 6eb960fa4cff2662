#pragma once

#include "platform/Files.h"

namespace pelmora::platform {

/// The file system by system calls. A listing costs one open, one fstat, the reads and one close,
/// with a look at single entries only where the kernel does not tell their type, and at desktop
/// entries, which may be links. Pipes, sockets and devices are never listed or read.
/// Thread: any; holds no state. Errors: the system's words after the path.
class PosixFiles : public Files {
 public:
  [[nodiscard]] Result<std::shared_ptr<const Listing>> list(const FilePath& folder,
                                                            FinalLink link) const override;
  [[nodiscard]] std::optional<FileFacts> facts(const FilePath& path, FinalLink link) const override;
  /// A link to a link leads to the last one's target; a desktop entry's target is not looked into.
  [[nodiscard]] std::optional<FilePath> resolveAlias(const FilePath& path) const override;
  /// An alias is no package, whatever it leads to.
  [[nodiscard]] std::optional<bool> isPackage(const FilePath& folder) const override;
  [[nodiscard]] bool hasPackageSuffix(std::string_view name) const override;
};

}  // namespace pelmora::platform
