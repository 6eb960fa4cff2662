#include "platform/linux/DesktopEntry.h"

#include <strings.h>

namespace pelmora::platform {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

char escapedCharacter(char letter) {
  switch (letter) {
    case 's':
      return ' ';
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    default:
      return letter;
  }
}

std::string withoutEscapes(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '\\' && i + 1 < text.size();
    plain += escape ? escapedCharacter(text[++i]) : text[i];
  }
  return plain;
}

void takeKey(DesktopEntry& entry, std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return;
  const std::string_view key = trimmed(line.substr(0, equals));
  std::string* const field = key == "Type" ? &entry.type : key == "URL" ? &entry.url : nullptr;
  if (field && field->empty()) *field = withoutEscapes(trimmed(line.substr(equals + 1)));
}

}  // namespace

bool DesktopEntry::hasEntryName(std::string_view fileName) {
  return fileName.ends_with(".desktop");
}

DesktopEntry DesktopEntry::parse(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  DesktopEntry entry;
  bool inEntryGroup = false;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    const std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.starts_with('[')) {
      inEntryGroup = line == "[Desktop Entry]";
    } else if (inEntryGroup && !line.starts_with('#')) {
      takeKey(entry, line);
    }
  }
  return entry;
}

bool DesktopEntry::isFileLink() const {
  return type == "Link" && strncasecmp(url.c_str(), "file:", 5) == 0;
}

}  // namespace pelmora::platform
