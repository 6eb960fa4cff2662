#pragma once

#include "shared/FilePath.h"

#include <optional>
#include <string_view>

namespace pelmora::platform {

/// The local path of a `file:` URL, percent escapes decoded to bytes; nullopt when it is none:
/// another scheme, another host than this one, a damaged escape, a zero byte, a relative path.
[[nodiscard]] std::optional<FilePath> localPathOfFileUrl(std::string_view url);

}  // namespace pelmora::platform
