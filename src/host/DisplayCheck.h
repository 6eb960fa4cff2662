#pragma once

#include "shared/Result.h"

namespace pelmora::host {

/// Whether windows can be opened: of the Wayland compositor and the X server that Qt would turn to,
/// one answers. Asked before Qt is started, which would abort the process otherwise. The error is
/// for the user.
[[nodiscard]] Status checkDisplay();

/// Makes Qt turn to the session's Wayland compositor, if there is one, unless the user has named a
/// platform. On some desktops Qt goes through X by itself, where scaled displays are blurred. Asked
/// before Qt is started, and before other threads are.
void preferWayland();

}  // namespace pelmora::host
