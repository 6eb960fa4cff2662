#pragma once

#include "shared/FilePath.h"

namespace pelmora::host {

/// The file of this process's program.
[[nodiscard]] FilePath runningProgram();

/// The program that decodes pictures: beside the running program, as it is built, else where it is
/// installed, in ../libexec/pelmora from there. A path that may not exist: whoever starts it says
/// so.
[[nodiscard]] FilePath decoderPath();
/// The same for a program that is at `program`.
[[nodiscard]] FilePath decoderPathFor(const FilePath& program);

/// The program that reads what is embedded in files; in the same places.
[[nodiscard]] FilePath inspectorPath();

}  // namespace pelmora::host
