#pragma once

#include "shared/Result.h"

#include <string>

class QByteArray;
class QImage;

namespace pelmora::host {

/// Writes with the mode that the user's umask gives, to whatever the path names: these are files
/// that a person asked for. Errors begin with the path. Thread: any.
[[nodiscard]] Status writeFile(const std::string& path, const QByteArray& bytes);
/// Writes a picture as PNG, in the same way.
[[nodiscard]] Status writePicture(const std::string& path, const QImage& picture);

}  // namespace pelmora::host
