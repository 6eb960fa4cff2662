#include "platform/Log.h"

#include <cstdarg>
#include <cstdio>
#include <string>

namespace pelmora::platform {

void Log::print(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  if (length >= 0) {
    std::string line(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(line.data(), line.size(), format, again);
    line.pop_back();
    write(line);
  }
  va_end(again);
}

}  // namespace pelmora::platform
