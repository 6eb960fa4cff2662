#include "platform/SystemError.h"

#include <array>
#include <cstring>

namespace pelmora::platform {

std::string systemErrorText(int errorNumber) {
  std::array<char, 128> buffer{};
  return strerror_r(errorNumber, buffer.data(), buffer.size());
}

Error systemError(const FilePath& path, int errorNumber) {
  return Error{path.bytes() + ": " + systemErrorText(errorNumber)};
}

}  // namespace pelmora::platform
