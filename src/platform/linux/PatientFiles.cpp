#include "platform/linux/PatientFiles.h"

#include <utility>

namespace pelmora::platform {

PatientFiles::PatientFiles(std::shared_ptr<const Files> files, RemoteMounts& mounts, Log& log,
                           std::chrono::milliseconds limit)
    : _files(std::move(files)), _mounts(mounts), _log(log), _guard(limit) {}

Result<std::shared_ptr<const Listing>> PatientFiles::list(const FilePath& folder,
                                                          FinalLink link) const {
  auto listing = waitUnlessLocal(
      folder, link, [files = _files, folder, link] { return files->list(folder, link); });
  if (!listing) return Error{folder.bytes() + ": it does not answer"};
  return *std::move(listing);
}

std::optional<FileFacts> PatientFiles::facts(const FilePath& path, FinalLink link) const {
  return waitUnlessLocal(path, link,
                         [files = _files, path, link] { return files->facts(path, link); })
      .value_or(std::nullopt);
}

std::optional<FilePath> PatientFiles::resolveAlias(const FilePath& path) const {
  return wait(path, [files = _files, path] { return files->resolveAlias(path); })
      .value_or(std::nullopt);
}

std::optional<bool> PatientFiles::isPackage(const FilePath& folder) const {
  return waitUnlessLocal(folder, FinalLink::refuse,
                         [files = _files, folder] { return files->isPackage(folder); })
      .value_or(std::nullopt);
}

bool PatientFiles::hasPackageSuffix(std::string_view name) const {
  return _files->hasPackageSuffix(name);
}

bool PatientFiles::isStalled(const FilePath& path) const {
  return _mounts.hasAny() && _guard.isStalled(nameFor(path).bytes());
}

void PatientFiles::giveUp() {
  _isGivenUp = true;
  _guard.giveUp();
}

/// Once for each time that it hangs.
void PatientFiles::tell(const FilePath& name) const {
  if (_isGivenUp) return;
  {
    const std::lock_guard lock(_mutex);
    std::erase_if(_told, [this](const FilePath& told) { return !_guard.isStalled(told.bytes()); });
    if (!_guard.isStalled(name.bytes()) || !_told.insert(name).second) return;
  }
  _log.print("Pelmora: '%s' does not answer; it is left out until it does", name.c_str());
}

}  // namespace pelmora::platform
