#include "platform/predicate/OperatorTable.h"
#include "platform/predicate/PredicateScanner.h"
#include "platform/predicate/PredicateText.h"
#include "platform/predicate/ReservedWords.h"
#include "platform/PrintableLine.h"
#include "platform/UnicodeText.h"

#include <algorithm>
#include <initializer_list>
#include <optional>

namespace pelmora::platform::predicate {

namespace {

/// How deep NOTs, parentheses and braces may lie in one another: a predicate as deep as one may be
/// has a pair of parentheses and a NOT on each level at most.
constexpr int kMaxNesting = 2 * kMaxDepth;
/// The characters of the text before the place that an error repeats.
constexpr std::size_t kLongestQuote = 40;

/// Reads a predicate by recursive descent; an alternative is chosen by its first token.
class Parser {
 public:
  explicit Parser(std::string_view text) : _scanner(text) {}
  Result<Predicate> parse();

 private:
  std::optional<Predicate> chain(CompoundType type, int depth);
  std::optional<Predicate> unary(int depth);
  std::optional<Predicate> enclosed(int depth);
  std::optional<Predicate> comparison(int depth);
  Modifier modifier(bool& isNegated);
  bool comparisonOperator(Comparison& comparison);
  bool options(unsigned& options);
  std::optional<Expression> expression(int depth, const char* expected);
  std::optional<Constant> constant(int depth, const char* expected = "a value");
  std::optional<Constant> wordConstant(const char* expected);
  std::optional<Constant> array(int depth);
  std::optional<Constant> date();

  [[nodiscard]] bool isName() const;
  [[nodiscard]] bool isWord(std::string_view upperWord) const;
  [[nodiscard]] bool isSymbol(std::string_view symbol) const;
  bool takeWord(std::initializer_list<std::string_view> upperWords);
  bool takeSymbol(std::string_view symbol);
  bool advance();
  void coverFrom(const char* begin);
  [[nodiscard]] std::size_t at(std::string_view source) const {
    return static_cast<std::size_t>(source.data() - _scanner.text().data());
  }
  std::nullopt_t fail(const std::string& expected);
  std::nullopt_t failAsTooDeep();

  PredicateScanner _scanner;
  Token _token;
  std::string_view _previous;  // what stands before the token
  std::optional<Error> _error;
};

Result<Predicate> Parser::parse() {
  if (!advance()) return *_error;
  std::optional<Predicate> predicate = chain(CompoundType::disjunction, 0);
  if (!predicate) return *_error;
  if (_token.kind != Token::Kind::end) fail("AND, OR or the end");
  if (_error) return *_error;
  if (!isWithinLimits(*predicate)) return Error{"the predicate is too deep or too large"};
  return *predicate;
}

/// A row of ORs, of rows of ANDs, of single predicates.
std::optional<Predicate> Parser::chain(CompoundType type, int depth) {
  const bool isOr = type == CompoundType::disjunction;
  const auto link = [&] { return isOr ? chain(CompoundType::conjunction, depth) : unary(depth); };
  std::vector<Predicate> parts;
  do {
    std::optional<Predicate> part = link();
    if (!part) return std::nullopt;
    parts.push_back(std::move(*part));
  } while (isOr ? takeWord({"OR"}) || takeSymbol("||") : takeWord({"AND"}) || takeSymbol("&&"));
  if (_error) return std::nullopt;
  if (parts.size() == 1) return std::move(parts.front());
  return Predicate(Compound{type, std::move(parts)});
}

std::optional<Predicate> Parser::unary(int depth) {
  if (depth >= kMaxNesting) return failAsTooDeep();
  if (takeWord({"NOT"}) || takeSymbol("!")) {
    std::optional<Predicate> negated = unary(depth + 1);
    if (!negated) return std::nullopt;
    return Predicate(Compound{CompoundType::negation, {std::move(*negated)}});
  }
  if (takeSymbol("(")) return enclosed(depth + 1);
  if (takeWord({"TRUEPREDICATE"})) return Predicate(Fixed{true});
  if (takeWord({"FALSEPREDICATE"})) return Predicate(Fixed{false});
  return comparison(depth);
}

std::optional<Predicate> Parser::enclosed(int depth) {
  std::optional<Predicate> predicate = chain(CompoundType::disjunction, depth);
  if (!predicate) return std::nullopt;
  if (!takeSymbol(")")) return fail("AND, OR or ')'");
  return predicate;
}

std::optional<Predicate> Parser::comparison(int depth) {
  bool isNegated = false;
  Comparison comparison;
  comparison.modifier = modifier(isNegated);
  const bool hasModifier = comparison.modifier != Modifier::direct;
  std::optional<Expression> left = expression(depth, hasModifier ? "a comparison" : "a predicate");
  if (!left) return std::nullopt;
  comparison.left = std::move(*left);
  if (!comparisonOperator(comparison)) return std::nullopt;
  // Of a pair that is written in another way, the fault would be told behind it.
  const bool isRange = comparison.type != Operator::between || isName() || isSymbol("{");
  if (!isRange) return fail("two values in braces");
  std::optional<Expression> right = expression(depth, "a value");
  if (!right) return std::nullopt;
  comparison.right = std::move(*right);
  if (!isNegated) return Predicate(std::move(comparison));
  return Predicate(Compound{CompoundType::negation, {Predicate(std::move(comparison))}});
}

Modifier Parser::modifier(bool& isNegated) {
  if (takeWord({"ALL"})) return Modifier::all;
  if (takeWord({"ANY", "SOME"})) return Modifier::any;
  isNegated = takeWord({"NONE"});
  return isNegated ? Modifier::any : Modifier::direct;
}

bool Parser::comparisonOperator(Comparison& comparison) {
  const char* const begin = _token.source.data();
  for (const OperatorEntry& entry : kOperators) {
    const bool isThis =
        takeSymbol(entry.symbol) || takeSymbol(entry.otherSymbol) || takeWord({entry.symbol});
    if (!isThis) continue;
    comparison.type = entry.type;
    if (!options(comparison.options)) return false;
    coverFrom(begin);
    return true;
  }
  fail("an operator");
  return false;
}

bool Parser::options(unsigned& options) {
  if (!takeSymbol("[")) return !_error;
  const std::string letters = _token.kind == Token::Kind::word ? _token.text : std::string();
  for (const char letter : letters) {
    if (upper(letter) == 'C') options |= kCaseInsensitive;
    if (upper(letter) == 'D') options |= kDiacriticInsensitive;
  }
  const bool isKnown = !letters.empty() && letters.find_first_not_of("cdCD") == std::string::npos;
  if (!isKnown) {
    fail("c, d or cd");
    return false;
  }
  if (advance() && takeSymbol("]")) return true;
  fail("']'");
  return false;
}

std::optional<Expression> Parser::expression(int depth, const char* expected) {
  if (!isName()) {
    if (takeWord({"SELF"})) return Expression(EvaluatedObject{});
    std::optional<Constant> value = constant(depth, expected);
    return value ? std::optional<Expression>(std::move(*value)) : std::nullopt;
  }
  KeyPath path{_token.text};
  constexpr std::string_view kSelf = "SELF.";
  const bool isOfSelf = !_token.isEscaped &&
                        equalsInAnyCase(std::string_view(path.path).substr(0, kSelf.size()), kSelf);
  if (isOfSelf) path.path.erase(0, kSelf.size());
  if (!advance()) return std::nullopt;
  return Expression(std::move(path));
}

std::optional<Constant> Parser::constant(int depth, const char* expected) {
  if (depth >= kMaxNesting) return failAsTooDeep();
  if (isSymbol("{")) return array(depth + 1);
  if (_token.kind == Token::Kind::word) return wordConstant(expected);
  std::optional<Constant> value;
  if (_token.kind == Token::Kind::string) value = Constant(std::move(_token.text));
  if (_token.kind == Token::Kind::integer) value = Constant(_token.integer);
  if (_token.kind == Token::Kind::real) value = Constant(_token.real);
  if (!value) return fail(expected);
  if (!advance()) return std::nullopt;
  return value;
}

std::optional<Constant> Parser::wordConstant(const char* expected) {
  if (isWord("CAST")) return date();
  if (takeWord({"TRUE", "YES"})) return Constant(true);
  if (takeWord({"FALSE", "NO"})) return Constant(false);
  if (takeWord({"NULL", "NIL"})) return Constant();
  return fail(expected);
}

std::optional<Constant> Parser::array(int depth) {
  Array elements;
  if (!takeSymbol("{")) return std::nullopt;
  if (takeSymbol("}")) return Constant(std::move(elements));
  do {
    std::optional<Constant> element = constant(depth);
    if (!element) return std::nullopt;
    elements.push_back(std::move(*element));
  } while (takeSymbol(","));
  if (!takeSymbol("}")) return fail("',' or '}'");
  return Constant(std::move(elements));
}

std::optional<Constant> Parser::date() {
  if (!takeWord({"CAST"}) || !takeSymbol("(")) return fail("'('");
  ReferenceTime time{_token.real};
  if (_token.kind == Token::Kind::integer) time.seconds = static_cast<double>(_token.integer);
  if (_token.kind != Token::Kind::integer && _token.kind != Token::Kind::real) {
    return fail("the seconds of a date");
  }
  if (!advance()) return std::nullopt;
  if (!takeSymbol(",")) return fail("','");
  if (_token.kind != Token::Kind::string || _token.text != "NSDate") return fail("\"NSDate\"");
  if (!advance()) return std::nullopt;
  if (!takeSymbol(")")) return fail("')'");
  return Constant(time);
}

bool Parser::isName() const {
  return _token.kind == Token::Kind::word && (_token.isEscaped || !isReservedWord(_token.text));
}

bool Parser::isWord(std::string_view upperWord) const {
  return _token.kind == Token::Kind::word && !_token.isEscaped &&
         equalsInAnyCase(_token.text, upperWord);
}

bool Parser::isSymbol(std::string_view symbol) const {
  return _token.kind == Token::Kind::symbol && _token.text == symbol;
}

bool Parser::takeWord(std::initializer_list<std::string_view> upperWords) {
  const bool isOne = std::any_of(upperWords.begin(), upperWords.end(),
                                 [this](std::string_view word) { return isWord(word); });
  return isOne && advance();
}

bool Parser::takeSymbol(std::string_view symbol) { return isSymbol(symbol) && advance(); }

bool Parser::advance() {
  if (_error) return false;
  _previous = _token.source;
  Result<Token> next = _scanner.next();
  if (next) {
    _token = std::move(*next);
    return true;
  }
  _error = next.error();
  return false;
}

/// Makes what lies between `begin` and the token what an error repeats.
void Parser::coverFrom(const char* begin) {
  const char* const end = _previous.data() + _previous.size();
  _previous = {begin, static_cast<std::size_t>(end - begin)};
}

/// The first problem is the one that is told.
std::nullopt_t Parser::fail(const std::string& expected) {
  if (_error) return std::nullopt;
  std::string message = "expected " + expected;
  if (!_previous.empty()) {
    std::size_t end = 0;
    for (std::size_t i = 0; i < kLongestQuote && end < _previous.size(); ++i) {
      if (!plist::nextCodePoint(_previous, end)) break;
    }
    const char* const rest = end < _previous.size() ? "…" : "";
    message += " after '" + std::string(_previous.substr(0, end)) + rest + "'";
  }
  _error = Error{message + _scanner.place(at(_token.source))};
  return std::nullopt;
}

std::nullopt_t Parser::failAsTooDeep() {
  if (!_error) _error = Error{"nested too deeply" + _scanner.place(at(_token.source))};
  return std::nullopt;
}

/// Where the text ceases to be UTF-8; its end when it doesn't.
std::size_t endOfUtf8(std::string_view text) {
  std::size_t at = 0;
  while (at < text.size() && plist::nextCodePoint(text, at)) {
  }
  return at;
}

}  // namespace

bool isReservedWord(std::string_view word) { return isOneInAnyCase(word, kReservedWords); }

Result<Predicate> parsePredicate(std::string_view text) {
  const std::size_t end = endOfUtf8(text);
  if (end < text.size()) {
    return Error{"the text is not UTF-8" + PredicateScanner(text).place(end)};
  }
  Result<Predicate> predicate = Parser(text).parse();
  if (predicate) return predicate;
  return Error{printableLine(predicate.error().message)};
}

}  // namespace pelmora::platform::predicate
