#pragma once

#include "platform/BinaryObjects.h"
#include "platform/PropertyList.h"
#include "platform/ReadingBudget.h"
#include "shared/Result.h"

#include <span>

namespace pelmora::plist {

/// Reads the binary form alone.
[[nodiscard]] Result<Value> readBinary(std::span<const std::uint8_t> bytes);

/// The value of an object that holds no others; nullopt for containers, for text that is no
/// Unicode, for numbers that don't fit and for dates that are none.
[[nodiscard]] std::optional<Value> scalarValue(const ObjectView& object);

}  // namespace pelmora::plist
