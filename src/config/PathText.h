#pragma once

#include "shared/FilePath.h"

#include <QString>

#include <optional>
#include <string_view>
#include <vector>

namespace pelmora::config {

/// A path to read: on one line, with a replacement character for each byte that is no UTF-8. It
/// does not lead back to the path.
[[nodiscard]] QString pathText(const FilePath& path);

/// The path that a "file:" URI names on this machine, byte by byte; nullopt for any other URI.
[[nodiscard]] std::optional<FilePath> pathOfUri(std::string_view uri);
/// The paths in a list of URIs, one a line, as other programs drop it. What is no path is left out.
[[nodiscard]] std::vector<FilePath> pathsOfUriList(std::string_view list);

}  // namespace pelmora::config
