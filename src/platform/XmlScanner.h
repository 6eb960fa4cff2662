#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace pelmora::plist {

/// Goes through the tags and the text of an XML document in order, without knowing what they mean.
/// The text is untrusted, must be UTF-8, is borrowed and must outlive this.
/// Thread: one at a time. Errors: nullopt or false, with `problem()` saying why.
class XmlScanner {
 public:
  struct Tag {
    std::string_view name;
    std::string_view attributes;  // as written
    bool opens = false;           // <name> and <name/>
    bool closes = false;          // </name> and <name/>
  };

  explicit XmlScanner(std::string_view text) : _text(text) {}

  /// Passes over the XML declaration and the document type; false when they are not allowed here.
  bool prolog();
  /// The next tag, behind nothing but white space and comments.
  std::optional<Tag> tag();
  /// The text up to the next tag, references and CDATA sections resolved.
  std::optional<std::string> text();
  /// Whether nothing but white space and comments is left.
  bool atEnd();

  [[nodiscard]] const char* problem() const { return _problem; }

 private:
  bool skipBlank();
  bool skipPast(std::string_view end);
  bool take(std::string_view word);
  bool docType();
  bool appendReference(std::string& out);
  bool appendCdata(std::string& out);
  void appendCharacter(std::string& out);
  std::nullopt_t fail(const char* problem);

  std::string_view _text;
  std::size_t _at = 0;
  const char* _problem = "the XML is damaged";
};

}  // namespace pelmora::plist
