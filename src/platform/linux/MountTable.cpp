#include "platform/linux/MountTable.h"

#include "platform/linux/SmallFile.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <optional>

namespace pelmora::platform {

namespace {

constexpr std::size_t kMaxMountInfoBytes = 8 * 1024 * 1024;

constexpr auto kLocalTypes = std::to_array<std::string_view>(
    {"bcachefs", "btrfs",    "erofs",   "exfat", "ext2",  "ext3",   "ext4", "f2fs",  "fuseblk",
     "hfs",      "hfsplus",  "iso9660", "jfs",   "msdos", "nilfs2", "ntfs", "ntfs3", "overlay",
     "reiserfs", "squashfs", "tmpfs",   "udf",   "vfat",  "xfs",    "zfs"});

bool isOctal(char digit) { return digit >= '0' && digit <= '7'; }

/// Blanks and backslashes are written as three octal digits.
std::string withoutOctalEscapes(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '\\' && text.size() - i > 3 && isOctal(text[i + 1]) &&
                        isOctal(text[i + 2]) && isOctal(text[i + 3]);
    if (!escape) {
      plain += text[i];
      continue;
    }
    plain +=
        static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0'));
    i += 3;
  }
  return plain;
}

std::vector<std::string_view> fieldsOf(std::string_view line) {
  std::vector<std::string_view> fields;
  while (!line.empty()) {
    const std::size_t end = line.find(' ');
    if (end != 0) fields.push_back(line.substr(0, end));
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
  }
  return fields;
}

/// "36 35 98:0 /root /point options optional… - type source superoptions"
std::optional<Mount> mountOfLine(std::string_view line) {
  constexpr std::size_t kRoot = 3;
  constexpr std::size_t kPoint = 4;
  constexpr std::size_t kFirstOptional = 6;
  const std::vector<std::string_view> fields = fieldsOf(line);
  if (fields.size() < kFirstOptional) return std::nullopt;
  const auto dash = std::find(fields.begin() + kFirstOptional, fields.end(), "-");
  if (fields.end() - dash < 3) return std::nullopt;
  Mount mount{FilePath(withoutOctalEscapes(fields[kPoint])),
              FilePath(withoutOctalEscapes(fields[kRoot])), std::string(dash[1]),
              withoutOctalEscapes(dash[2])};
  const bool absolute = mount.point.bytes().starts_with('/') && mount.root.bytes().starts_with('/');
  return absolute ? std::optional(std::move(mount)) : std::nullopt;
}

/// `path`, which is at or below `from`, moved to `to`.
FilePath moved(const FilePath& path, const FilePath& from, const FilePath& to) {
  std::string_view rest = path.bytes();
  rest.remove_prefix(from.bytes() == "/" ? 0 : from.bytes().size());
  const std::string_view base = to.bytes() == "/" ? std::string_view() : to.bytes();
  FilePath result(std::string(base) + std::string(rest));
  return result.empty() ? FilePath("/") : result;
}

}  // namespace

bool isAtOrBelow(const FilePath& path, const FilePath& folder) {
  const std::string& bytes = path.bytes();
  if (folder.bytes() == "/") return bytes.starts_with('/');
  if (folder.empty() || !bytes.starts_with(folder.bytes())) return false;
  return bytes.size() == folder.bytes().size() || bytes[folder.bytes().size()] == '/';
}

bool Mount::isLocalStorage() const {
  return std::find(kLocalTypes.begin(), kLocalTypes.end(), type) != kLocalTypes.end();
}

FilePath Mount::pathInFilesystem(const FilePath& path) const { return moved(path, point, root); }

FilePath Mount::pathHere(const FilePath& pathInFilesystem) const {
  return isAtOrBelow(pathInFilesystem, root) ? moved(pathInFilesystem, root, point) : FilePath();
}

MountTable MountTable::parse(std::string_view mountInfo) {
  MountTable table;
  while (!mountInfo.empty()) {
    const std::size_t end = mountInfo.find('\n');
    if (auto mount = mountOfLine(mountInfo.substr(0, end))) {
      table._mounts.push_back(std::move(*mount));
    }
    mountInfo.remove_prefix(end == std::string_view::npos ? mountInfo.size() : end + 1);
  }
  return table;
}

MountTable MountTable::ofThisProcess() {
  const Result<std::string> text =
      readSmallFile(AT_FDCWD, "/proc/self/mountinfo", kMaxMountInfoBytes);
  return text ? parse(*text) : MountTable();
}

const Mount* MountTable::mountOf(const FilePath& path) const {
  const Mount* best = nullptr;
  for (const Mount& mount : _mounts) {
    if (!isAtOrBelow(path, mount.point)) continue;
    // Of several on the same folder the last one mounted is seen.
    if (!best || mount.point.bytes().size() >= best->point.bytes().size()) best = &mount;
  }
  return best;
}

}  // namespace pelmora::platform
