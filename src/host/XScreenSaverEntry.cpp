#include "host/XScreenSaverEntry.h"

#include "platform/PrintableLine.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace pelmora::host {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kArguments = " --root";

std::string_view withoutBlanksBefore(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text;
}

std::string_view firstWord(std::string_view text) {
  return text.substr(0, text.find_first_of(kBlanks));
}

/// The entry without what switches it off.
std::string_view withoutSwitch(std::string_view entry) {
  entry = withoutBlanksBefore(entry);
  if (entry.starts_with('-')) entry = withoutBlanksBefore(entry.substr(1));
  return entry;
}

std::string_view withoutVisual(std::string_view entry) {
  const std::string_view word = firstWord(entry);
  const std::size_t colon = word.find(':');
  const bool isVisual = colon != std::string_view::npos && colon < word.find_first_of("/\"");
  return isVisual ? withoutBlanksBefore(entry.substr(colon + 1)) : entry;
}

std::string_view withoutTitle(std::string_view entry) {
  if (!entry.starts_with('"')) return entry;
  const std::size_t end = entry.find('"', 1);
  return end == std::string_view::npos ? "" : withoutBlanksBefore(entry.substr(end + 1));
}

bool isPlain(char letter) {
  const bool isLetter = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
  const bool isDigit = letter >= '0' && letter <= '9';
  return isLetter || isDigit ||
         std::string_view("/._-+,@%=").find(letter) != std::string_view::npos;
}

}  // namespace

bool isSwitchedOff(std::string_view entry) { return withoutBlanksBefore(entry).starts_with('-'); }

std::string_view programOf(std::string_view entry) {
  std::string_view program = firstWord(withoutTitle(withoutVisual(withoutSwitch(entry))));
  const std::size_t slash = program.rfind('/');
  return slash == std::string_view::npos ? program : program.substr(slash + 1);
}

Result<std::string> entryFor(const FilePath& program, const std::vector<FilePath>& folders) {
  const std::string_view name = program.lastComponent();
  std::error_code problem;
  for (const FilePath& folder : folders) {
    const FilePath found = folder / name;
    if (!std::filesystem::exists(found.bytes(), problem)) continue;
    if (std::filesystem::equivalent(found.bytes(), program.bytes(), problem)) {
      return std::string(name) + std::string(kArguments);
    }
    break;
  }
  if (!std::all_of(program.bytes().begin(), program.bytes().end(), isPlain)) {
    return Error{"XScreenSaver cannot be told of a program at '" +
                 platform::printableLine(program.bytes()) +
                 "': it takes blanks and signs in a path for something else"};
  }
  return program.bytes() + std::string(kArguments);
}

std::vector<FilePath> programFolders(std::string_view searchPath) {
  std::vector<FilePath> folders = {FilePath("/usr/libexec/xscreensaver"),
                                   FilePath("/usr/lib/xscreensaver")};
  while (!searchPath.empty()) {
    const std::size_t end = std::min(searchPath.find(':'), searchPath.size());
    if (searchPath.starts_with('/')) folders.emplace_back(std::string(searchPath.substr(0, end)));
    searchPath.remove_prefix(std::min(end + 1, searchPath.size()));
  }
  return folders;
}

}  // namespace pelmora::host
