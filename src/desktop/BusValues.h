#pragma once

#include "platform/PropertyList.h"

#include <QVariant>

#include <cstddef>

namespace pelmora::desktop {

// Between values on the bus and ours. What comes from the bus is untrusted: of a text the first
// `kLongestBusText` units are read, of lists and dictionaries the first `kMostBusEntries` entries,
// of dictionaries in dictionaries one level; what is of any other type is null.

constexpr qsizetype kLongestBusText = 4096;  // UTF-16 units
constexpr std::size_t kMostBusEntries = 256;

/// A text, number, boolean, list of texts or variants, or dictionary of variants.
[[nodiscard]] plist::Value fromBus(const QVariant& value);
/// A dictionary of variants; empty for anything else.
[[nodiscard]] plist::Dictionary dictionaryFromBus(const QVariant& value);

/// A text, number or boolean; an invalid variant for anything else.
[[nodiscard]] QVariant toBus(const plist::Value& value);

}  // namespace pelmora::desktop
