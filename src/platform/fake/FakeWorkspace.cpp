#include "platform/fake/FakeWorkspace.h"

namespace pelmora::platform {

std::vector<std::string> FakeWorkspace::tagNames(const FilePath& file) const {
  const auto found = tags.find(file);
  return found == tags.end() ? std::vector<std::string>() : found->second;
}

}  // namespace pelmora::platform
