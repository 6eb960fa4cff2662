#include "platform/XmlPropertyList.h"

#include "platform/ReadingBudget.h"
#include "platform/UnicodeText.h"
#include "platform/XmlScalars.h"
#include "platform/XmlScanner.h"

#include <algorithm>
#include <utility>

namespace pelmora::plist {

namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) : _scanner(text) {}

  std::optional<Value> document();
  [[nodiscard]] const char* problem() const { return _problem ? _problem : _scanner.problem(); }

 private:
  std::optional<Value> element(const XmlScanner::Tag& tag, int depth);
  std::optional<Value> array(const XmlScanner::Tag& tag, int depth);
  std::optional<Value> dictionary(const XmlScanner::Tag& tag, int depth);
  std::optional<Value> scalar(const XmlScanner::Tag& tag);
  std::optional<std::string> content(const XmlScanner::Tag& tag);
  std::nullopt_t fail(const char* problem) {
    if (!_problem) _problem = problem;
    return std::nullopt;
  }

  XmlScanner _scanner;
  const char* _problem = nullptr;  // the scanner's own when null
};

bool endsOf(const XmlScanner::Tag& tag, std::string_view name) {
  return tag.closes && !tag.opens && tag.name == name && tag.attributes.empty();
}

std::optional<Value> Reader::document() {
  if (!_scanner.prolog()) return std::nullopt;
  const auto plist = _scanner.tag();
  if (!plist) return std::nullopt;
  if (plist->name != "plist" || !plist->opens || plist->closes) {
    return fail("the XML is no property list");
  }
  const auto first = _scanner.tag();
  if (!first) return std::nullopt;
  std::optional<Value> root = element(*first, 0);
  if (!root) return std::nullopt;
  const auto last = _scanner.tag();
  if (!last) return std::nullopt;
  if (!endsOf(*last, "plist") || !_scanner.atEnd()) {
    return fail("the property list has more than one value");
  }
  return root;
}

std::optional<Value> Reader::element(const XmlScanner::Tag& tag, int depth) {
  if (!tag.opens || !tag.attributes.empty()) return fail("an element of the XML is unknown");
  if (tag.name != "array" && tag.name != "dict") return scalar(tag);
  if (depth >= ReadingBudget::kMaxDepth) return fail("the property list is too deep");
  return tag.name == "array" ? array(tag, depth + 1) : dictionary(tag, depth + 1);
}

std::optional<Value> Reader::array(const XmlScanner::Tag& tag, int depth) {
  Array elements;
  while (!tag.closes) {
    const auto next = _scanner.tag();
    if (!next) return std::nullopt;
    if (endsOf(*next, "array")) break;
    std::optional<Value> value = element(*next, depth);
    if (!value) return std::nullopt;
    elements.push_back(std::move(*value));
  }
  return elements;
}

std::optional<Value> Reader::dictionary(const XmlScanner::Tag& tag, int depth) {
  Dictionary pairs;
  while (!tag.closes) {
    const auto keyTag = _scanner.tag();
    if (!keyTag) return std::nullopt;
    if (endsOf(*keyTag, "dict")) break;
    if (keyTag->name != "key" || !keyTag->opens || !keyTag->attributes.empty()) {
      return fail("a dictionary of the XML lacks a key");
    }
    std::optional<std::string> key = content(*keyTag);
    if (!key) return std::nullopt;
    const auto valueTag = _scanner.tag();
    if (!valueTag) return std::nullopt;
    std::optional<Value> value = element(*valueTag, depth);
    if (!value) return std::nullopt;
    if (!pairs.emplace(std::move(*key), std::move(*value)).second) {
      return fail("a key of the property list appears twice");
    }
  }
  return pairs;
}

/// The text of an element, which its end tag must follow.
std::optional<std::string> Reader::content(const XmlScanner::Tag& tag) {
  if (tag.closes) return std::string();
  std::optional<std::string> text = _scanner.text();
  if (!text) return std::nullopt;
  const auto end = _scanner.tag();
  if (!end) return std::nullopt;
  if (!endsOf(*end, tag.name)) return fail("an element of the XML has no end");
  return text;
}

template <typename T>
std::optional<Value> valueOf(std::optional<T> scalar) {
  if (!scalar) return std::nullopt;
  return Value(std::move(*scalar));
}

std::optional<Value> Reader::scalar(const XmlScanner::Tag& tag) {
  std::optional<std::string> text = content(tag);
  if (!text) return std::nullopt;
  std::optional<Value> value;
  if (tag.name == "string") value = Value(std::move(*text));
  if (tag.name == "integer") value = valueOf(integerFromText(*text));
  if (tag.name == "real") value = valueOf(realFromText(*text));
  if (tag.name == "date") value = valueOf(dateFromText(*text));
  if (tag.name == "data") value = valueOf(dataFromText(*text));
  if (tag.name == "true" && text->empty()) value = Value(true);
  if (tag.name == "false" && text->empty()) value = Value(false);
  if (!value) return fail("a value of the XML is damaged or of an unknown type");
  return value;
}

/// The control characters that XML may not hold.
bool isForbidden(char c) {
  return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

}  // namespace

Result<Value> readXml(std::string_view text) {
  if (!isUtf8(text)) return Error{"neither a binary property list nor UTF-8 text"};
  if (std::any_of(text.begin(), text.end(), isForbidden)) {
    return Error{"neither a binary property list nor XML"};
  }
  Reader reader(text);
  std::optional<Value> root = reader.document();
  if (!root) return Error{reader.problem()};
  return std::move(*root);
}

}  // namespace pelmora::plist
