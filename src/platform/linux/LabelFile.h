#pragma once

#include "platform/Log.h"
#include "shared/FilePath.h"
#include "shared/Geometry.h"

#include <string>
#include <string_view>
#include <vector>

namespace pelmora::platform {

/// A name that a tag can have, and the colour that it is shown in.
struct Label {
  std::string name;
  Color color;
  bool operator==(const Label&) const = default;
};

/// The labels that a user keeps in a text file: a name and a colour a line ("Holiday #3366cc");
/// lines that begin with "#" are remarks. A line that makes no sense is logged and passed over. A
/// file that is not there holds none; one that cannot be read is logged.
[[nodiscard]] std::vector<Label> labelsInFile(const FilePath& file, Log& log);

}  // namespace pelmora::platform
