#include "view/DisplayListFile.h"

#include <QString>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

namespace pelmora::view {

namespace {

constexpr char16_t kByteOrderMark = 0xFEFF;

bool writeAll(int descriptor, const char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t written = write(descriptor, bytes, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace

std::u16string utf16WithByteOrderMark(std::string_view utf8) {
  const QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
  return kByteOrderMark + text.toStdU16String();
}

Status createDisplayListFile(const FilePath& path) {
  const int descriptor =
      open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0600);
  if (descriptor < 0) return Error{std::strerror(errno)};
  close(descriptor);
  return Done{};
}

bool writeDisplayListFile(const FilePath& path, const std::vector<FilePath>& images) {
  const int descriptor = open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return false;
  std::string text;
  for (const FilePath& image : images) text += image.bytes() + '\r';
  const std::u16string encoded = utf16WithByteOrderMark(text);
  const std::size_t size = encoded.size() * sizeof(char16_t);
  const bool written = writeAll(descriptor, reinterpret_cast<const char*>(encoded.data()), size) &&
                       ftruncate(descriptor, static_cast<off_t>(size)) == 0;
  close(descriptor);
  return written;
}

}  // namespace pelmora::view
