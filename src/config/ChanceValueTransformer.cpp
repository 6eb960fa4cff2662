#include "config/ChanceValueTransformer.h"

#include "config/LeadingNumber.h"
#include "platform/Log.h"

#include <string>

namespace pelmora::config {

namespace {

/// Of what is neither text nor number.
const char* className(const plist::Value& value) {
  if (value.get<ReferenceTime>()) return "NSDate";
  if (value.get<plist::Bytes>()) return "NSData";
  if (value.get<plist::Array>()) return "NSArray";
  if (value.get<plist::Dictionary>()) return "NSDictionary";
  return "NSNull";
}

bool isNumber(const plist::Value& value) {
  return value.get<bool>() || value.get<std::int64_t>() || value.get<double>();
}

}  // namespace

ChanceValueTransformer::Value ChanceValueTransformer::transformedValue(const Value& value) const {
  if (!value) return plist::Value(0);
  if (const auto* text = value->get<std::string>()) return plist::Value(leadingNumber(*text));
  if (!isNumber(*value)) {
    _log.print("Unexpected class '%s' in ChanceValueTransformer's transformedValue.",
               className(*value));
  }
  return value;
}

ChanceValueTransformer::Value ChanceValueTransformer::reverseTransformedValue(
    const Value& value) const {
  return transformedValue(value);
}

}  // namespace pelmora::config
