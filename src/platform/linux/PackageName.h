#pragma once

#include <string_view>

namespace pelmora::platform {

/// Whether a folder of this name is one document to the user, by its suffix (in either case).
[[nodiscard]] bool isPackageName(std::string_view name);

}  // namespace pelmora::platform
