#pragma once

#include "shared/Result.h"

namespace pelmora::host {

/// Whether windows can be opened: a Wayland compositor or an X server answers. Asked before Qt is
/// started, which would abort the process otherwise. The error is for the user.
[[nodiscard]] Status checkDisplay();

}  // namespace pelmora::host
