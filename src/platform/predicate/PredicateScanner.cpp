#include "platform/predicate/PredicateScanner.h"

#include "platform/UnicodeText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

namespace pelmora::platform::predicate {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isWordStart(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool isWordPart(char c) { return isWordStart(c) || isDigit(c); }
bool isSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

/// Longer ones first, where one begins with another.
constexpr std::array<std::string_view, 20> kSymbols = {
    "==", "=<", "=>", "!=", "<>", "<=", ">=", "&&", "||", "=",
    "!",  "<",  ">",  "(",  ")",  "{",  "}",  "[",  "]",  ","};

/// The length of an identifier at the beginning; 0 when there is none.
std::size_t identifierLength(std::string_view text) {
  if (text.empty() || !isWordStart(text[0])) return 0;
  std::size_t length = 1;
  while (length < text.size() && isWordPart(text[length])) ++length;
  return length;
}

/// The base that a prefix names, which is taken away.
int takeBase(std::string_view& digits) {
  constexpr std::array<std::pair<std::string_view, int>, 6> kPrefixes = {
      {{"0x", 16}, {"0X", 16}, {"0o", 8}, {"0O", 8}, {"0b", 2}, {"0B", 2}}};
  for (const auto& [prefix, base] : kPrefixes) {
    if (digits.substr(0, 2) != prefix) continue;
    digits.remove_prefix(2);
    return base;
  }
  return 10;
}

/// The length of what was meant to be a number: up to what can't be part of one.
std::size_t numberLength(std::string_view text) {
  std::size_t length = 1;  // its sign, dot or first digit
  while (length < text.size()) {
    const char c = text[length];
    const char before = text[length - 1];
    const bool isSign =
        (c == '-' || c == '+') && (before == 'e' || before == 'E') && text.substr(0, 2) != "0x";
    if (!isWordPart(c) && c != '.' && !isSign) break;
    ++length;
  }
  return length;
}

/// Whether a number stands there, or the beginning of one.
bool startsNumber(std::string_view text) {
  if (!text.empty() && text[0] == '-') text.remove_prefix(1);
  if (!text.empty() && text[0] == '.') text.remove_prefix(1);
  return !text.empty() && isDigit(text[0]);
}

}  // namespace

bool isPlainKeyPath(std::string_view path) {
  for (;;) {
    const std::size_t length = identifierLength(path);
    if (length == 0) return false;
    if (length == path.size()) return true;
    if (path[length] != '.') return false;
    path.remove_prefix(length + 1);
  }
}

std::string PredicateScanner::place(std::size_t at) const {
  const std::string_view before = _text.substr(0, at);
  const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
  const auto characters = std::count_if(before.begin(), before.end(), isFirstByte);
  return " at character " + std::to_string(characters + 1);
}

Error PredicateScanner::error(const std::string& what, std::size_t at) const {
  return Error{what + place(at)};
}

Token PredicateScanner::token(Token::Kind kind, std::size_t length) {
  Token token;
  token.kind = kind;
  token.source = _text.substr(_at, length);
  _at += length;
  return token;
}

Result<Token> PredicateScanner::next() {
  while (_at < _text.size() && isSpace(_text[_at])) ++_at;
  if (_at == _text.size()) return token(Token::Kind::end, 0);
  const char c = _text[_at];
  if (c == '"' || c == '\'') return string();
  if (c == '#' || isWordStart(c)) return word();
  if (startsNumber(_text.substr(_at))) return number();
  return symbol();
}

Result<Token> PredicateScanner::word() {
  std::string path;
  std::size_t at = _at;
  for (;;) {
    if (at < _text.size() && _text[at] == '#') ++at;
    const std::size_t length = identifierLength(_text.substr(at));
    if (length == 0) return error("expected a name", at);
    path += _text.substr(at, length);
    at += length;
    if (at == _text.size() || _text[at] != '.') break;
    path += '.';
    ++at;
  }
  Token word = token(Token::Kind::word, at - _at);
  word.text = std::move(path);
  word.isEscaped = word.source[0] == '#';
  return word;
}

Result<Token> PredicateScanner::number() {
  const std::size_t begin = _at;
  const bool isNegative = _text[_at] == '-';
  Token number = token(Token::Kind::integer, numberLength(_text.substr(_at)));
  std::string_view digits = number.source.substr(isNegative ? 1 : 0);
  const int base = takeBase(digits);
  // The sign goes along, as the smallest integer has no positive twin.
  std::string written = isNegative ? "-" : "";
  written += digits;
  const char* const first = written.data();
  const char* const last = first + written.size();

  std::from_chars_result read = std::from_chars(first, last, number.integer, base);
  const bool isReal = base == 10 && written.find_first_of(".eE") != std::string::npos;
  if (isReal) {
    number.kind = Token::Kind::real;
    read = std::from_chars(first, last, number.real);
  }
  const bool isWhole = read.ptr == last && !digits.starts_with('-');
  if (!isWhole || read.ec == std::errc::invalid_argument) return error("expected a number", begin);
  if (read.ec != std::errc()) return error("the number is too large or too small", begin);
  return number;
}

Result<Token> PredicateScanner::string() {
  const std::size_t begin = _at;
  const char quote = _text[begin];
  std::string content;
  std::size_t at = begin + 1;
  while (at < _text.size() && _text[at] != quote) {
    if (_text[at] != '\\') {
      content += _text[at++];
      continue;
    }
    const std::size_t behind = escape(at, content);
    if (behind == at) return error("expected one of \\\\ \\\" \\' \\n \\r \\t \\uXXXX", at);
    at = behind;
  }
  if (at == _text.size()) return error("expected the end of the text that begins", begin);
  Token string = token(Token::Kind::string, at + 1 - begin);
  string.text = std::move(content);
  return string;
}

/// The place behind the escape at `at`, whose meaning is appended; `at` when it has none.
std::size_t PredicateScanner::escape(std::size_t at, std::string& out) const {
  constexpr std::string_view kEscapes = "\\\"'nrt";
  constexpr std::string_view kMeanings = "\\\"'\n\r\t";
  if (at + 1 >= _text.size()) return at;
  const char kind = _text[at + 1];
  if (const std::size_t i = kEscapes.find(kind); i != std::string_view::npos) {
    out += kMeanings[i];
    return at + 2;
  }
  const std::string_view digits = _text.substr(at + 2, 4);
  if (kind != 'u' || digits.size() < 4) return at;
  std::uint32_t codePoint = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + 4, codePoint, 16);
  const bool isSurrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
  if (read.ec != std::errc() || read.ptr != digits.data() + 4 || isSurrogate) return at;
  plist::appendUtf8(codePoint, out);
  return at + 6;
}

Result<Token> PredicateScanner::symbol() {
  for (const std::string_view known : kSymbols) {
    if (_text.substr(_at, known.size()) != known) continue;
    Token symbol = token(Token::Kind::symbol, known.size());
    symbol.text = known;
    return symbol;
  }
  std::size_t behind = _at;
  if (!plist::nextCodePoint(_text, behind)) return error("the text is not UTF-8", _at);
  const std::string unknown(_text.substr(_at, behind - _at));
  return error("'" + unknown + "' means nothing", _at);
}

}  // namespace pelmora::platform::predicate
