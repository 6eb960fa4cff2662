#pragma once

#include "inspector/EmbeddedText.h"

#include <exiv2/value.hpp>

#include <optional>
#include <string>
#include <vector>

namespace pelmora::inspector {

// A value of Exiv2 as plain values. Thread: any. Errors: what is none is left out.

/// Its texts, none of them empty; several of XMP's lists. Of texts in several languages the one
/// that is for all.
[[nodiscard]] std::vector<std::string> textsOf(const Exiv2::Value& value,
                                               Otherwise otherwise = Otherwise::latin1);
/// Of bytes that are little-endian UTF-16, as in the tags that Windows made.
[[nodiscard]] std::string textOfWideBytes(const Exiv2::Value& value);

/// Its number at a place; of a text what it says, as a number or a fraction.
[[nodiscard]] std::optional<double> numberOf(const Exiv2::Value& value, std::size_t index = 0);

}  // namespace pelmora::inspector
