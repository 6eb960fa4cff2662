#include "host/PictureFile.h"

#include <QBuffer>
#include <QByteArray>
#include <QImage>

#include <cerrno>
#include <cstring>
#include <fstream>

namespace pelmora::host {

Status writeFile(const std::string& path, const QByteArray& bytes) {
  errno = 0;
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.constData(), bytes.size());
  file.close();
  if (!file) return Error{path + ": " + std::strerror(errno != 0 ? errno : EIO)};
  return Done{};
}

Status writePicture(const std::string& path, const QImage& picture) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!picture.save(&buffer, "PNG")) return Error{path + ": the picture could not be encoded"};
  return writeFile(path, bytes);
}

}  // namespace pelmora::host
