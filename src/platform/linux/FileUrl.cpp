#include "platform/linux/FileUrl.h"

#include <strings.h>

#include <string>

namespace pelmora::platform {

namespace {

bool startsWithIgnoringCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() &&
         strncasecmp(text.data(), prefix.data(), prefix.size()) == 0;
}

int hexDigit(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

std::optional<std::string> decodePercentEscapes(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      bytes += text[i];
      continue;
    }
    if (text.size() - i < 3) return std::nullopt;
    const int high = hexDigit(text[i + 1]);
    const int low = hexDigit(text[i + 2]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return bytes;
}

}  // namespace

std::optional<FilePath> localPathOfFileUrl(std::string_view url) {
  constexpr std::string_view kScheme = "file:";
  constexpr std::string_view kLocalhost = "localhost";
  if (!startsWithIgnoringCase(url, kScheme)) return std::nullopt;
  url.remove_prefix(kScheme.size());
  if (url.starts_with("//")) {
    url.remove_prefix(2);
    if (startsWithIgnoringCase(url, kLocalhost)) url.remove_prefix(kLocalhost.size());
  }
  url = url.substr(0, url.find_first_of("?#"));
  if (!url.starts_with('/')) return std::nullopt;
  std::optional<std::string> path = decodePercentEscapes(url);
  if (!path || path->find('\0') != std::string::npos) return std::nullopt;
  return FilePath(std::move(*path));
}

}  // namespace pelmora::platform
