#include "host/XScreenSaverFile.h"

#include "host/XScreenSaverEntry.h"

#include <algorithm>
#include <cassert>
#include <charconv>

namespace pelmora::host {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kIndent = "\t\t\t\t";
constexpr std::string_view kEntryEnd = "\\n";
constexpr std::string_view kJoin = "\\\n";

bool isBlank(char letter) { return kBlanks.find(letter) != std::string_view::npos; }

std::string lower(std::string_view text) {
  std::string result(text);
  for (char& letter : result) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return result;
}

/// The end of the line that begins here together with those that it is joined with: its line feed,
/// or the end of the text.
std::size_t endOfJoinedLines(std::string_view text, std::size_t begin) {
  for (std::size_t at = begin;; ++at) {
    at = text.find('\n', at);
    if (at == std::string_view::npos) return text.size();
    if (at == begin || text[at - 1] != '\\') return at;
  }
}

/// The blanks from here on and the join after them are passed; where there is no join, nothing is.
std::size_t afterJoin(std::string_view text, std::size_t at, std::size_t end) {
  std::size_t next = at;
  while (next < end && isBlank(text[next])) ++next;
  return next + 1 < end && text.substr(next, 2) == kJoin ? next + 2 : at;
}

}  // namespace

Result<XScreenSaverFile> XScreenSaverFile::parse(std::string text) {
  XScreenSaverFile file(std::move(text));
  if (const Status read = file.read(); !read) return read.error();
  return file;
}

Status XScreenSaverFile::read() {
  _resources.clear();
  _entries.clear();
  if (_text.find('\0') != std::string::npos) return Error{"it is not a text"};
  if (_text.find("\r\n") != std::string::npos) {
    return Error{"its lines end as on another system, which XScreenSaver does not read"};
  }
  std::size_t line = 1;
  for (std::size_t begin = 0; begin < _text.size();) {
    const std::size_t end = endOfJoinedLines(_text, begin);
    if (const Status taken = readResource(begin, end, line); !taken) return taken;
    const auto from = _text.begin() + static_cast<std::ptrdiff_t>(begin);
    line += 1 + static_cast<std::size_t>(
                    std::count(from, _text.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
    begin = end + 1;
  }
  if (const Resource* programs = resource("programs")) readEntries(*programs);
  return Done{};
}

Status XScreenSaverFile::readResource(std::size_t begin, std::size_t end, std::size_t line) {
  const std::string_view text = std::string_view(_text).substr(begin, end - begin);
  const std::size_t first = text.find_first_not_of(" \t\\\n\v\f\r");
  if (first == std::string_view::npos || std::string_view("#!;").find(text[first]) < 3) {
    return Done{};
  }
  const std::size_t colon = text.find(':');
  if (colon == std::string_view::npos) {
    return Error{"line " + std::to_string(line) + " is neither 'name: value' nor a comment"};
  }
  Resource found{lower(text.substr(first, colon - first)), begin, begin + colon + 1, end};
  if (found.name == "programs" && resource("programs") != nullptr) {
    return Error{"line " + std::to_string(line) + " begins a second list of programs"};
  }
  _resources.push_back(std::move(found));
  return Done{};
}

void XScreenSaverFile::readEntries(const Resource& programs) {
  for (std::size_t at = programs.value; at < programs.end;) {
    Entry entry;
    at = readEntry(at, programs.end, entry);
    if (!entry.text.empty()) _entries.push_back(std::move(entry));
  }
}

/// Reads to the end of an entry or of the list; tells where that is.
std::size_t XScreenSaverFile::readEntry(std::size_t begin, std::size_t end, Entry& entry) const {
  entry.begin = begin;
  std::size_t at = begin;
  while (at < end && !entry.isEnded) {
    const std::string_view two =
        std::string_view(_text).substr(at, std::min<std::size_t>(2, end - at));
    entry.isEnded = two == kEntryEnd;
    // A backslash before the end of the text joins with nothing.
    const bool isJoin = two == kJoin || two == "\\";
    const std::size_t length = entry.isEnded || isJoin || two == "\\\\" ? two.size() : 1;
    if (!entry.isEnded && !isJoin && !(entry.text.empty() && isBlank(_text[at]))) {
      if (entry.text.empty()) entry.first = at;
      entry.text += two.substr(0, length);
      if (!isBlank(_text[at])) entry.afterLast = at + length;
    }
    at += length;
  }
  while (!entry.text.empty() && isBlank(entry.text.back())) entry.text.pop_back();
  const std::size_t next = entry.isEnded ? afterJoin(_text, at, end) : at;
  entry.isLineEnded = next != at;
  return entry.end = next;
}

const XScreenSaverFile::Resource* XScreenSaverFile::resource(std::string_view name) const {
  // XScreenSaver takes the last one.
  const auto found = std::find_if(_resources.rbegin(), _resources.rend(),
                                  [name](const Resource& each) { return each.name == name; });
  return found == _resources.rend() ? nullptr : &*found;
}

std::string XScreenSaverFile::valueOf(std::string_view name) const {
  const Resource* found = resource(name);
  if (found == nullptr) return "";
  std::string value = _text.substr(found->value, found->end - found->value);
  for (std::size_t join = value.find(kJoin); join != std::string::npos; join = value.find(kJoin)) {
    value.erase(join, kJoin.size());
  }
  const std::size_t first = value.find_first_not_of(kBlanks);
  if (first == std::string::npos) return "";
  return value.substr(first, value.find_last_not_of(kBlanks) - first + 1);
}

std::optional<long> XScreenSaverFile::selected() const {
  const std::string value = valueOf("selected");
  long number = 0;
  const auto [stop, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error != std::errc() || stop != value.data() + value.size()) return std::nullopt;
  return number;
}

std::optional<std::size_t> XScreenSaverFile::find(std::string_view program) const {
  const auto found = std::find_if(_entries.begin(), _entries.end(), [program](const Entry& each) {
    return programOf(each.text) == program;
  });
  if (found == _entries.end()) return std::nullopt;
  return static_cast<std::size_t>(found - _entries.begin());
}

bool XScreenSaverFile::isSwitchedOff(std::size_t position) const {
  return host::isSwitchedOff(_entries.at(position).text);
}

bool XScreenSaverFile::isSelected(std::size_t position) const {
  return lower(valueOf("mode")) == "one" && selected() == static_cast<long>(position);
}

bool XScreenSaverFile::selectsElsewhere() const {
  return _entries.empty() && lower(valueOf("mode")) == "one" && selected().value_or(-1) >= 0;
}

void XScreenSaverFile::add(std::string_view entry) {
  const long position = static_cast<long>(_entries.size());
  const std::string line = std::string(kIndent) + std::string(entry);
  const std::string endedLine = line + "\t\t\t    " + std::string(kEntryEnd) + std::string(kJoin);
  if (!_entries.empty()) {
    const Entry last = _entries.back();
    if (last.isLineEnded) {
      replace(last.end, last.end, endedLine);
    } else if (last.isEnded) {
      replace(last.end, last.end, std::string(kJoin) + line + ' ' + std::string(kEntryEnd));
    } else {
      replace(last.afterLast, last.afterLast,
              ' ' + std::string(kEntryEnd) + std::string(kJoin) + line);
    }
  } else if (const Resource* programs = resource("programs")) {
    replace(programs->value, programs->end, "\t\t\t" + std::string(kJoin) + endedLine);
  } else {
    endLastLine();
    replace(_text.size(), _text.size(), "programs:\t\t\t" + std::string(kJoin) + endedLine + '\n');
  }
  endLastLine();
  // A choice beyond the list stays beyond it.
  if (const auto chosen = selected(); chosen && *chosen >= position) {
    setValue("selected", std::to_string(*chosen + 1));
  }
}

void XScreenSaverFile::switchOn(std::size_t position) {
  const Entry entry = _entries.at(position);
  if (host::isSwitchedOff(entry.text)) replace(entry.first, entry.first + 1, " ");
}

void XScreenSaverFile::select(std::size_t position) {
  setValue("mode", "one");
  setValue("selected", std::to_string(position));
}

void XScreenSaverFile::remove(std::size_t position) {
  const bool wasSelected = isSelected(position);
  const auto chosen = selected();
  const Entry entry = _entries.at(position);
  if (_entries.size() == 1) {
    const Resource programs = *resource("programs");
    replace(programs.begin, std::min(programs.end + 1, _text.size()), "");
  } else {
    replace(entry.begin, entry.end, "");
  }
  if (chosen && *chosen == static_cast<long>(position)) setValue("selected", "-1");
  if (chosen && *chosen > static_cast<long>(position)) {
    setValue("selected", std::to_string(*chosen - 1));
  }
  if (wasSelected) setValue("mode", "random");
}

void XScreenSaverFile::setValue(std::string_view name, std::string_view value) {
  if (valueOf(name) == value) return;
  const Resource* found = resource(name);
  if (found == nullptr) {
    endLastLine();
    return replace(_text.size(), _text.size(),
                   std::string(name) + ":\t\t" + std::string(value) + '\n');
  }
  std::size_t begin = found->value;
  while (begin < found->end && isBlank(_text[begin])) ++begin;
  std::size_t end = found->end;
  while (end > begin && isBlank(_text[end - 1])) --end;
  replace(begin, end, (begin == found->value ? "\t" : "") + std::string(value));
}

void XScreenSaverFile::replace(std::size_t begin, std::size_t end, std::string_view with) {
  _text.replace(begin, end - begin, with);
  [[maybe_unused]] const Status status = read();
  assert(status && "an edit has broken the file");
}

/// What comes next begins a line of its own.
void XScreenSaverFile::endLastLine() {
  if (_text.empty()) return;
  const bool isOpen = !_text.ends_with('\n') || _text.ends_with(kJoin);
  if (isOpen) replace(_text.size(), _text.size(), _text.ends_with('\\') ? "\n\n" : "\n");
}

}  // namespace pelmora::host
