#pragma once

#include "shared/Result.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::host {

/// The text of a user's ~/.xscreensaver, in which the list of programs and the choice among them
/// can be changed; every other byte stays as it is. The list is one resource, `programs`, over many
/// lines: a backslash at the end of a line joins it with the next, and the two letters \n end an
/// entry. The choice is a number: the position in that list, from 0 on, so that it follows its
/// entry when the list changes. Thread: a plain value. Errors: one line for the user; the text is
/// then as it was.
class XScreenSaverFile {
 public:
  [[nodiscard]] static Result<XScreenSaverFile> parse(std::string text);

  [[nodiscard]] const std::string& text() const { return _text; }
  /// The position of the first entry that runs the program, by its name without folder.
  [[nodiscard]] std::optional<std::size_t> find(std::string_view program) const;
  /// Whether the entry at a position is there but switched off.
  [[nodiscard]] bool isSwitchedOff(std::size_t position) const;
  /// Whether the entry at a position is the one that is shown.
  [[nodiscard]] bool isSelected(std::size_t position) const;
  /// Whether a choice is made in a list that is not in this file, but XScreenSaver's own: a list
  /// here would turn it into another one.
  [[nodiscard]] bool selectsElsewhere() const;

  /// Puts an entry at the end of the list.
  void add(std::string_view entry);
  void switchOn(std::size_t position);
  /// Has XScreenSaver show the entry alone.
  void select(std::size_t position);
  /// Where the entry was the one that is shown, XScreenSaver chooses at random from then on.
  void remove(std::size_t position);

 private:
  struct Resource {
    std::string name;       // in small letters
    std::size_t begin = 0;  // of its first line
    std::size_t value = 0;  // after the colon
    std::size_t end = 0;    // after its last line's text
  };
  struct Entry {
    std::size_t begin = 0;
    std::size_t first = 0;      // its first sign that is no blank
    std::size_t afterLast = 0;  // after its last sign
    std::size_t end = 0;        // after what separates it from the next
    bool isEnded = false;
    bool isLineEnded = false;  // the next entry begins a line
    std::string text;
  };

  explicit XScreenSaverFile(std::string text) : _text(std::move(text)) {}

  [[nodiscard]] Status read();
  [[nodiscard]] Status readResource(std::size_t begin, std::size_t end, std::size_t line);
  void readEntries(const Resource& programs);
  [[nodiscard]] std::size_t readEntry(std::size_t begin, std::size_t end, Entry& entry) const;
  [[nodiscard]] const Resource* resource(std::string_view name) const;
  [[nodiscard]] std::string valueOf(std::string_view name) const;
  [[nodiscard]] std::optional<long> selected() const;
  void setValue(std::string_view name, std::string_view value);
  void replace(std::size_t begin, std::size_t end, std::string_view with);
  void endLastLine();

  std::string _text;
  std::vector<Resource> _resources;
  std::vector<Entry> _entries;  // without the empty ones, which XScreenSaver does not count
};

}  // namespace pelmora::host
