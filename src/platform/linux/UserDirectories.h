#pragma once

#include "shared/FilePath.h"

#include <optional>
#include <string_view>

namespace pelmora::platform {

/// What the text of a `user-dirs.dirs` file gives for a variable such as XDG_PICTURES_DIR: a path
/// under `home` ("$HOME/…") or an absolute one; nullopt when it gives none or makes no sense. The
/// last of several lines counts, as in the shell. `home` itself stands for "no such folder".
[[nodiscard]] std::optional<FilePath> userDirectory(std::string_view text,
                                                    std::string_view variable,
                                                    const FilePath& home);

}  // namespace pelmora::platform
