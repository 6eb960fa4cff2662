#include "platform/predicate/FoldedPattern.h"

#include "platform/UnicodeText.h"

#include <array>
#include <cstdio>

namespace pelmora::platform::predicate {

namespace {

constexpr Folding kDiacritics{.ignoresCase = false, .ignoresDiacritics = true};

void appendFolded(std::string_view plain, Folding folding, LikePattern& pattern) {
  const std::string folded = foldedText(plain, folding);
  for (std::size_t at = 0; at < folded.size();) pattern += codePointOrByte(folded, at);
}

bool isAlphanumeric(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Copies a regular expression, and folds each character that stands for itself.
class RegexFolder {
 public:
  explicit RegexFolder(std::string_view expression) : _rest(expression) {}
  std::string folded();

 private:
  void backslash();
  void quotation();
  void setBegin();
  std::string_view take(std::size_t bytes);
  std::string_view takeCharacter();
  void appendPlain(std::string_view character);

  std::string_view _rest;
  std::string _folded;
  int _openSets = 0;
};

std::string RegexFolder::folded() {
  while (!_rest.empty()) {
    const char c = _rest[0];
    if (c == '\\') {
      backslash();
    } else if (c == '[') {
      setBegin();
    } else if (plist::isAscii(_rest.substr(0, 1))) {
      if (c == ']' && _openSets > 0) --_openSets;
      _folded += take(1);
    } else {
      appendPlain(takeCharacter());
    }
  }
  return std::move(_folded);
}

/// With what it gives a meaning to, or takes it from.
void RegexFolder::backslash() {
  if (_rest.starts_with("\\Q")) {
    quotation();
  } else if (plist::isAscii(_rest.substr(0, 2))) {
    _folded += take(2);
  } else {
    take(1);
    appendPlain(takeCharacter());
  }
}

/// Folding could make an end in what is between \Q and \E, so each character is made plain instead.
void RegexFolder::quotation() {
  take(2);
  while (!_rest.empty() && !_rest.starts_with("\\E")) appendPlain(takeCharacter());
  take(2);
}

/// A bracket that follows is the first character of the set, and not its end.
void RegexFolder::setBegin() {
  ++_openSets;
  _folded += take(_rest.starts_with("[^") ? 2 : 1);
  if (_rest.starts_with("]")) _folded += take(1);
}

std::string_view RegexFolder::take(std::size_t bytes) {
  const std::string_view taken = _rest.substr(0, bytes);
  _rest.remove_prefix(taken.size());
  return taken;
}

std::string_view RegexFolder::takeCharacter() {
  std::size_t length = 0;
  (void)codePointOrByte(_rest, length);
  return take(length);
}

/// As one, so that a quantifier behind it is for all of what it folds into.
void RegexFolder::appendPlain(std::string_view character) {
  const std::string folded = foldedText(character, kDiacritics);
  std::size_t firstLength = 0;
  if (!folded.empty()) (void)codePointOrByte(folded, firstLength);
  const bool wantsGroup = firstLength < folded.size() && _openSets == 0;
  if (wantsGroup) _folded += "(?:";
  for (const char c : folded) {
    if (isAlphanumeric(c) || !plist::isAscii({&c, 1})) {
      _folded += c;
      continue;
    }
    // Plain even in a comment, where a backslash means nothing.
    std::array<char, 8> escape{};
    std::snprintf(escape.data(), escape.size(), "\\x{%02X}", static_cast<unsigned>(c));
    _folded += escape.data();
  }
  if (wantsGroup) _folded += ')';
}

}  // namespace

LikePattern foldedLikePattern(std::string_view pattern, Folding folding) {
  LikePattern result;
  std::string plain;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const char next = at + 1 < pattern.size() ? pattern[at + 1] : '\0';
    const bool isEscape = pattern[at] == '\\' && (next == '*' || next == '?' || next == '\\');
    if (isEscape) {
      plain += pattern[++at];
    } else if (pattern[at] == '*' || pattern[at] == '?') {
      appendFolded(plain, folding, result);
      plain.clear();
      result += pattern[at] == '*' ? kAnyCharacters : kAnyCharacter;
    } else {
      plain += pattern[at];
    }
  }
  appendFolded(plain, folding, result);
  return result;
}

std::string foldedLikeText(std::string_view pattern, Folding folding) {
  std::string text;
  for (const char32_t piece : foldedLikePattern(pattern, folding)) {
    if (piece == kAnyCharacters || piece == kAnyCharacter) {
      text += piece == kAnyCharacters ? '*' : '?';
      continue;
    }
    if (piece == '*' || piece == '?' || piece == '\\') text += '\\';
    plist::appendUtf8(piece, text);
  }
  return text;
}

std::string regexWithoutDiacritics(std::string_view expression) {
  if (plist::isAscii(expression)) return std::string(expression);
  return RegexFolder(expression).folded();
}

char32_t codePointOrByte(std::string_view text, std::size_t& at) {
  const std::size_t begin = at;
  if (const auto codePoint = plist::nextCodePoint(text, at)) return *codePoint;
  at = begin + 1;
  return static_cast<unsigned char>(text[begin]);
}

}  // namespace pelmora::platform::predicate
