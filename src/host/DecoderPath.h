#pragma once

#include "shared/FilePath.h"

#include <string_view>

namespace pelmora::host {

/// The file of this process's program.
[[nodiscard]] FilePath runningProgram();

/// The folder that stands at `fromItsFolder` (such as "../share") from where `program` is, without
/// the way back in its path.
[[nodiscard]] FilePath installedFolder(const FilePath& program, std::string_view fromItsFolder);

/// The program that decodes pictures: beside the running program, as it is built, else where it is
/// installed, usually in ../libexec/pelmora from there. A path that may not exist: whoever starts
/// it says so.
[[nodiscard]] FilePath decoderPath();
/// The same for a program that is at `program`.
[[nodiscard]] FilePath decoderPathFor(const FilePath& program);

/// The program that reads what is embedded in files; in the same places.
[[nodiscard]] FilePath inspectorPath();

}  // namespace pelmora::host
