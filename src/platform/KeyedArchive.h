#pragma once

#include "platform/PropertyList.h"

namespace pelmora::plist {

/// Keyed archives (`$archiver`, `$version`, `$objects`, `$top` with "root"): values become the
/// platform's class entries (NSMutableDictionary, NSArray, NSString, NSNumber, NSDate, NSData), each
/// dictionary and array with "NS.keys" and "NS.objects".

/// Archives a value of dictionaries, arrays, strings, numbers, booleans, dates and data.
[[nodiscard]] Bytes archive(const Value& root);

/// Reads an archive of just those classes; anything else, and anything damaged, is an error.
[[nodiscard]] Result<Value> unarchive(std::span<const std::uint8_t> bytes);

}  // namespace pelmora::plist
