#include "platform/XmlScanner.h"

#include "platform/UnicodeText.h"

#include <charconv>
#include <utility>

namespace pelmora::plist {

namespace {

constexpr std::string_view kBlank = " \t\r\n";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kCommentStart = "<!--";
constexpr std::string_view kCdataStart = "<![CDATA[";

bool isNameCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
         c == '-' || c == '.' || c == ':';
}

/// The characters that a document may hold.
bool isAllowed(char32_t c) {
  return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c <= 0xD7FF) ||
         (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

/// The character that "#65", "#x41" or "amp" stands for.
std::optional<char32_t> referredCharacter(std::string_view name) {
  constexpr std::pair<std::string_view, char32_t> kNamed[] = {
      {"lt", U'<'}, {"gt", U'>'}, {"amp", U'&'}, {"quot", U'"'}, {"apos", U'\''}};
  for (const auto& [known, character] : kNamed) {
    if (name == known) return character;
  }
  if (!name.starts_with('#')) return std::nullopt;
  const bool hex = name.starts_with("#x");
  const std::string_view digits = name.substr(hex ? 2 : 1);
  std::uint32_t value = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, hex ? 16 : 10);
  if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
  return isAllowed(value) ? std::optional<char32_t>(value) : std::nullopt;
}

}  // namespace

std::nullopt_t XmlScanner::fail(const char* problem) {
  _problem = problem;
  return std::nullopt;
}

bool XmlScanner::take(std::string_view word) {
  if (!_text.substr(_at).starts_with(word)) return false;
  _at += word.size();
  return true;
}

bool XmlScanner::skipPast(std::string_view end) {
  const std::size_t found = _text.find(end, _at);
  if (found == std::string_view::npos) return false;
  _at = found + end.size();
  return true;
}

/// White space and comments; false for a comment without an end.
bool XmlScanner::skipBlank() {
  for (;;) {
    _at = std::min(_text.find_first_not_of(kBlank, _at), _text.size());
    if (!take(kCommentStart)) return true;
    if (!skipPast("-->")) return false;
  }
}

bool XmlScanner::prolog() {
  take(kByteOrderMark);
  if (take("<?xml")) {
    const std::size_t start = _at;
    if (!skipPast("?>")) return false;
    const std::string_view declaration = _text.substr(start, _at - start);
    const bool namesEncoding = declaration.find("encoding") != std::string_view::npos;
    const bool isUtf8Named = declaration.find("UTF-8") != std::string_view::npos ||
                             declaration.find("utf-8") != std::string_view::npos;
    if (namesEncoding && !isUtf8Named) {
      _problem = "the XML is not UTF-8";
      return false;
    }
  }
  if (!skipBlank()) return false;
  return !take("<!DOCTYPE") || docType();
}

bool XmlScanner::docType() {
  const std::size_t end = _text.find_first_of("[>", _at);
  if (end == std::string_view::npos) return false;
  if (_text[end] == '[') {
    _problem = "the XML declares entities of its own";
    return false;
  }
  _at = end + 1;
  return true;
}

std::optional<XmlScanner::Tag> XmlScanner::tag() {
  if (!skipBlank() || !take("<")) return fail("the XML has no tag where one is due");
  Tag tag;
  tag.closes = take("/");
  tag.opens = !tag.closes;

  const std::size_t start = _at;
  while (_at < _text.size() && isNameCharacter(_text[_at])) ++_at;
  tag.name = _text.substr(start, _at - start);
  const std::size_t end = _text.find_first_of("<>", _at);
  if (tag.name.empty() || end == std::string_view::npos || _text[end] != '>') {
    return fail("a tag of the XML is damaged");
  }
  std::string_view rest = _text.substr(_at, end - _at);
  if (rest.ends_with('/')) {
    if (!tag.opens) return fail("a tag of the XML is damaged");
    tag.closes = true;
    rest.remove_suffix(1);
  }
  tag.attributes = rest.substr(std::min(rest.find_first_not_of(kBlank), rest.size()));
  _at = end + 1;
  return tag;
}

std::optional<std::string> XmlScanner::text() {
  std::string out;
  while (_at < _text.size()) {
    if (take(kCommentStart)) {
      if (!skipPast("-->")) return fail("a comment of the XML has no end");
    } else if (take(kCdataStart)) {
      if (!appendCdata(out)) return fail("a CDATA section of the XML has no end");
    } else if (_text[_at] == '<') {
      return out;
    } else if (_text[_at] == '&') {
      if (!appendReference(out)) return fail("a reference of the XML is unknown");
    } else {
      appendCharacter(out);
    }
  }
  return fail("the XML is cut short");
}

/// A carriage return, alone or before a line feed, is a line end like any other.
void XmlScanner::appendCharacter(std::string& out) {
  const char c = _text[_at++];
  if (c != '\r') {
    out += c;
  } else if (_at >= _text.size() || _text[_at] != '\n') {
    out += '\n';
  }
}

bool XmlScanner::appendCdata(std::string& out) {
  const std::size_t end = _text.find("]]>", _at);
  if (end == std::string_view::npos) return false;
  while (_at < end) appendCharacter(out);
  _at = end + 3;
  return true;
}

bool XmlScanner::appendReference(std::string& out) {
  constexpr std::size_t kLongest = 12;
  const std::size_t end = _text.substr(0, _at + kLongest).find(';', _at);
  if (end == std::string_view::npos) return false;
  const std::optional<char32_t> character = referredCharacter(_text.substr(_at + 1, end - _at - 1));
  if (!character) return false;
  appendUtf8(*character, out);
  _at = end + 1;
  return true;
}

bool XmlScanner::atEnd() { return skipBlank() && _at == _text.size(); }

}  // namespace pelmora::plist
