#pragma once

#include "platform/PropertyList.h"
#include "shared/Result.h"

#include <string_view>

namespace pelmora::plist {

/// Reads the XML form alone: UTF-8, the elements of the property list DTD, character references and
/// the five named entities. A DTD is passed over, never fetched; one with declarations of its own
/// is an error, and so is everything else that the DTD does not allow.
[[nodiscard]] Result<Value> readXml(std::string_view text);

}  // namespace pelmora::plist
