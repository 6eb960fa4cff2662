#pragma once

#include "platform/FileDescriptor.h"
#include "platform/Files.h"
#include "platform/linux/RemoteMounts.h"
#include "platform/linux/StallGuard.h"
#include "platform/Log.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <set>

namespace pelmora::platform {

/// Files that are not waited for longer than ten seconds where they may be on another machine:
/// a share whose server is gone reads as unreadable, at once from the second time on, until it
/// answers again. Whatever is on this machine's own storage is asked directly.
/// Thread: any. Ownership: `mounts` and the log outlive it; what hangs keeps `files`. Errors: one
/// log line when a share begins not to answer.
class PatientFiles : public Files {
 public:
  static constexpr std::chrono::milliseconds kLimit{10'000};

  PatientFiles(std::shared_ptr<const Files> files, RemoteMounts& mounts, Log& log,
               std::chrono::milliseconds limit = kLimit);

  [[nodiscard]] Result<std::shared_ptr<const Listing>> list(const FilePath& folder,
                                                            FinalLink link) const override;
  [[nodiscard]] std::optional<FileFacts> facts(const FilePath& path, FinalLink link) const override;
  [[nodiscard]] std::optional<FilePath> resolveAlias(const FilePath& path) const override;
  [[nodiscard]] std::optional<bool> isPackage(const FilePath& folder) const override;
  [[nodiscard]] bool hasPackageSuffix(std::string_view name) const override;
  [[nodiscard]] bool isStalled(const FilePath& path) const override;

  /// Ends all waiting, now and from now on: the program is about to end. Nothing is logged then.
  void giveUp();

  /// Does something with a path that may hang, such as opening it: what comes of it, or nullopt
  /// where it hangs. The work must not refer to what may go.
  template <typename Work>
  auto wait(const FilePath& path, Work work) const -> std::optional<decltype(work())> {
    // A link on this machine's storage may lead to a share, which is asked once for all links.
    if (!_mounts.hasAny()) return work();
    const FilePath name = nameFor(path);
    auto value = _guard.wait(name.bytes(), std::move(work));
    if (!value) tell(name);
    return value;
  }

 private:
  /// Under which what hangs is known: the share's, or the path where none is known.
  [[nodiscard]] FilePath nameFor(const FilePath& path) const {
    return _mounts.pointBehind(path).value_or(path);
  }
  /// The same, for a path whose last part is not followed where it is a link.
  template <typename Work>
  auto waitUnlessLocal(const FilePath& path, FinalLink link, Work work) const
      -> std::optional<decltype(work())> {
    if (link == FinalLink::refuse && !_mounts.pointOf(path)) return work();
    return wait(path, std::move(work));
  }
  void tell(const FilePath& name) const;

  const std::shared_ptr<const Files> _files;
  RemoteMounts& _mounts;
  Log& _log;
  mutable StallGuard _guard;
  std::atomic<bool> _isGivenUp = false;
  mutable std::mutex _mutex;
  mutable std::set<FilePath> _told;  // under the mutex; of the names that hang
};

}  // namespace pelmora::platform
