#include "platform/linux/UserDirectories.h"

#include <string>

namespace pelmora::platform {

namespace {

std::string_view withoutLeadingBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

/// The text between double quotes at the beginning of `text`, backslashes resolved.
std::optional<std::string> quotedText(std::string_view text) {
  if (!text.starts_with('"')) return std::nullopt;
  std::string plain;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == '"') return plain;
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return std::nullopt;
}

std::optional<FilePath> pathOfValue(std::string_view value, const FilePath& home) {
  constexpr std::string_view kHome = "$HOME";
  const std::optional<std::string> plain = quotedText(value);
  if (!plain || plain->find('\0') != std::string::npos) return std::nullopt;
  if (plain->starts_with('/')) return FilePath(*plain);
  if (!plain->starts_with(kHome)) return std::nullopt;
  const std::string below = plain->substr(kHome.size());
  if (!below.empty() && below.front() != '/') return std::nullopt;
  return FilePath(home.bytes() + below);
}

}  // namespace

std::optional<FilePath> userDirectory(std::string_view text, std::string_view variable,
                                      const FilePath& home) {
  std::optional<FilePath> found;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    std::string_view line = withoutLeadingBlanks(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (!line.starts_with(variable)) continue;
    line = withoutLeadingBlanks(line.substr(variable.size()));
    if (!line.starts_with('=')) continue;
    if (const auto path = pathOfValue(withoutLeadingBlanks(line.substr(1)), home)) found = path;
  }
  return found;
}

}  // namespace pelmora::platform
