#include "platform/linux/RemoteMounts.h"

#include <algorithm>
#include <array>
#include <deque>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace pelmora::platform {

namespace {

/// Those that answer by themselves, beside the storage of this machine.
constexpr auto kKernelTypes = std::to_array<std::string_view>(
    {"binfmt_misc", "bpf",       "cgroup",   "cgroup2", "configfs",  "debugfs",
     "devpts",      "devtmpfs",  "efivarfs", "fusectl", "hugetlbfs", "mqueue",
     "nsfs",        "proc",      "pstore",   "ramfs",   "rootfs",    "rpc_pipefs",
     "securityfs",  "selinuxfs", "sysfs",    "tracefs"});

bool isRemote(const Mount& mount) {
  return !mount.isLocalStorage() &&
         std::find(kKernelTypes.begin(), kKernelTypes.end(), mount.type) == kKernelTypes.end();
}

}  // namespace

bool RemoteMounts::hasAny() { return tableWithRemote() != nullptr; }

std::optional<FilePath> RemoteMounts::pointOf(const FilePath& path) {
  const auto table = tableWithRemote();
  const Mount* mount = table ? table->mountOf(path) : nullptr;
  return mount && isRemote(*mount) ? std::optional(mount->point) : std::nullopt;
}

std::optional<FilePath> RemoteMounts::pointBehind(const FilePath& path) {
  namespace fs = std::filesystem;
  constexpr int kMostLinks = 40;  // as many as the kernel follows
  fs::path done = "/";
  std::deque<fs::path> left;
  const auto prepend = [&left](const fs::path& names) {
    left.insert(left.begin(), names.begin(), names.end());
  };
  prepend(fs::path(path.bytes()).relative_path());
  int links = 0;
  while (!left.empty()) {
    const fs::path next = (done / left.front()).lexically_normal();
    left.pop_front();
    if (auto point = pointOf(FilePath(next.string()))) return point;
    std::error_code error;
    const fs::path target = fs::read_symlink(next, error);
    if (error) {
      done = next;
      continue;
    }
    if (++links > kMostLinks) return std::nullopt;
    prepend(target.relative_path());
    if (target.is_absolute()) done = "/";
  }
  return std::nullopt;
}

std::shared_ptr<const MountTable> RemoteMounts::tableWithRemote() {
  const std::lock_guard lock(_mutex);
  auto table = _current->table();
  if (table != _table) {
    _hasRemote = std::any_of(table->mounts().begin(), table->mounts().end(), isRemote);
    _table = std::move(table);
  }
  return _hasRemote ? _table : nullptr;
}

}  // namespace pelmora::platform
