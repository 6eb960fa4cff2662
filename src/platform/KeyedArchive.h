#pragma once

#include "platform/PropertyList.h"

namespace pelmora::plist {

/// Keyed archives (`$archiver`, `$version`, `$objects`, `$top` with "root"): values become the
/// platform's class entries (NSMutableDictionary, NSArray, NSString, NSNumber, NSDate, NSData),
/// each dictionary and array with "NS.keys" and "NS.objects".

/// Archives a value of dictionaries, arrays, strings, numbers, booleans, dates and data;
/// dictionaries as mutable ones. Equal strings are archived once. What is not UTF-8, keys included,
/// becomes data.
[[nodiscard]] Bytes archive(const Value& root);

/// Reads an archive of just those classes and their mutable or plain twins; anything else, and
/// anything damaged, is an error. Containers may lie 128 deep, and what they share is bounded as it
/// is in `read`.
[[nodiscard]] Result<Value> unarchive(std::span<const std::uint8_t> bytes);

}  // namespace pelmora::plist
