#pragma once

#include "shared/FilePath.h"

namespace pelmora::host {

/// The folder of the texts that come with the program: "data" beside the running program, as it is
/// built, else where it is installed, usually in ../share/pelmora from there. It may not exist: who
/// reads there says so, or does without.
[[nodiscard]] FilePath resourceFolder();
/// The same for a program that is at `program`.
[[nodiscard]] FilePath resourceFolderFor(const FilePath& program);

}  // namespace pelmora::host
