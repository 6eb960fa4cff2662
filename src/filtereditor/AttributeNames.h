#pragma once

#include <QString>

#include <span>
#include <string_view>

namespace pelmora::filtereditor {

/// An attribute that is a text, and what the user calls it.
struct AttributeName {
  std::string_view attribute;
  const char* text = nullptr;  // not yet translated

  [[nodiscard]] QString translated() const;
};

/// Those that a row may compare, the most useful first. Thread: any; it never changes.
[[nodiscard]] std::span<const AttributeName> attributeNames();

}  // namespace pelmora::filtereditor
