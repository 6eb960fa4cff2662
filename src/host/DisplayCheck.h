#pragma once

#include "shared/Result.h"

namespace pelmora::host {

/// Whether windows can be opened: a Wayland compositor or an X server answers. Asked before Qt is
/// started, which would abort the process otherwise. The error is for the user.
[[nodiscard]] Status checkDisplay();

/// Whether the X server of the environment answers.
[[nodiscard]] bool xServerAnswers();
/// Whether the Wayland compositor of the environment answers.
[[nodiscard]] bool compositorAnswers();

}  // namespace pelmora::host
