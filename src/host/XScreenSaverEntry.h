#pragma once

#include "shared/FilePath.h"
#include "shared/Result.h"

#include <string>
#include <string_view>
#include <vector>

namespace pelmora::host {

// One entry of XScreenSaver's list of programs: `GL: "A name" program --option`, all but the
// command optional, and with a leading `-` for one that is not to be shown.

/// Whether an entry is there but switched off.
[[nodiscard]] bool isSwitchedOff(std::string_view entry);

/// The name of the program that an entry runs, without its folder; empty for an entry without one.
[[nodiscard]] std::string_view programOf(std::string_view entry);

/// The entry that has XScreenSaver run `program` on a window of its own: by the name alone where
/// the first program of that name in `folders` is this one, else with its path. The error is for
/// the user: a path that XScreenSaver would take apart.
[[nodiscard]] Result<std::string> entryFor(const FilePath& program,
                                           const std::vector<FilePath>& folders);

/// Where XScreenSaver looks for programs, in its order, with this search path (`PATH`).
[[nodiscard]] std::vector<FilePath> programFolders(std::string_view searchPath);

}  // namespace pelmora::host
