#pragma once

#include "shared/Result.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pelmora::platform::predicate {

/// A piece of a predicate's text.
struct Token {
  enum class Kind : std::uint8_t { end, word, string, integer, real, symbol };

  Kind kind = Kind::end;
  std::string_view source;  // as it is written
  std::string text;         // of a word without '#', of a string without quotes and escapes
  bool isEscaped = false;   // a word that is a name, whatever it says
  std::int64_t integer = 0;
  double real = 0;
};

/// Cuts the text of a predicate into tokens. The text is untrusted, is borrowed and must outlive
/// this and the tokens. Errors: one line, with the place in characters from 1. Thread: one at a
/// time.
class PredicateScanner {
 public:
  explicit PredicateScanner(std::string_view text) : _text(text) {}

  /// The next token; `Kind::end` over and over at the end.
  [[nodiscard]] Result<Token> next();

  /// " at character N" for a place in the text.
  [[nodiscard]] std::string place(std::size_t at) const;
  [[nodiscard]] std::string_view text() const { return _text; }

 private:
  [[nodiscard]] Result<Token> word();
  [[nodiscard]] Result<Token> number();
  [[nodiscard]] Result<Token> string();
  [[nodiscard]] Result<Token> symbol();
  [[nodiscard]] std::size_t escape(std::size_t at, std::string& out) const;
  [[nodiscard]] Error error(const std::string& what, std::size_t at) const;
  [[nodiscard]] Token token(Token::Kind kind, std::size_t length);

  std::string_view _text;
  std::size_t _at = 0;
};

/// Whether `path` is written in a text as it is: identifiers with dots between.
[[nodiscard]] bool isPlainKeyPath(std::string_view path);

}  // namespace pelmora::platform::predicate
