#include "platform/fake/CountingFiles.h"

#include <algorithm>

namespace pelmora::platform {

std::size_t CountingFiles::count(Call call, const FilePath& path) const {
  const std::vector<FilePath> all = paths(call);
  return static_cast<std::size_t>(std::count(all.begin(), all.end(), path));
}

std::size_t CountingFiles::count(Call call) const { return paths(call).size(); }

std::vector<FilePath> CountingFiles::paths(Call call) const {
  const std::lock_guard lock(_mutex);
  const auto found = _calls.find(call);
  return found == _calls.end() ? std::vector<FilePath>() : found->second;
}

void CountingFiles::clearCounts() {
  const std::lock_guard lock(_mutex);
  _calls.clear();
}

void CountingFiles::fail(Call call, const FilePath& path) {
  const std::lock_guard lock(_mutex);
  _failures.emplace(call, path);
}

void CountingFiles::succeedAgain() {
  const std::lock_guard lock(_mutex);
  _failures.clear();
}

bool CountingFiles::shallFail(Call call, const FilePath& path) const {
  const std::lock_guard lock(_mutex);
  _calls[call].push_back(path);
  return _failures.contains({call, path});
}

Result<std::shared_ptr<const Listing>> CountingFiles::list(const FilePath& folder,
                                                           FinalLink link) const {
  if (shallFail(Call::list, folder)) return Error{folder.bytes() + ": told to fail"};
  return _files.list(folder, link);
}

std::optional<FileFacts> CountingFiles::facts(const FilePath& path, FinalLink link) const {
  if (shallFail(Call::facts, path)) return std::nullopt;
  return _files.facts(path, link);
}

std::optional<FilePath> CountingFiles::resolveAlias(const FilePath& path) const {
  if (shallFail(Call::resolveAlias, path)) return std::nullopt;
  return _files.resolveAlias(path);
}

std::optional<bool> CountingFiles::isPackage(const FilePath& folder) const {
  if (shallFail(Call::isPackage, folder)) return std::nullopt;
  return _files.isPackage(folder);
}

bool CountingFiles::hasPackageSuffix(std::string_view name) const {
  return _files.hasPackageSuffix(name);
}

bool CountingFiles::isStalled(const FilePath& path) const { return _files.isStalled(path); }

}  // namespace pelmora::platform
