#include "platform/PropertyList.h"

#include "platform/BinaryPropertyList.h"
#include "platform/XmlPropertyList.h"

#include <cmath>
#include <limits>

namespace pelmora::plist {

namespace {

/// The whole part of a real, at the nearest end of the range when it lies outside.
std::int64_t truncated(double value) {
  constexpr double kEnd = 9223372036854775808.0;  // 2^63, the first that doesn't fit
  if (std::isnan(value)) return 0;
  if (value >= kEnd) return std::numeric_limits<std::int64_t>::max();
  if (value < -kEnd) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(value);
}

}  // namespace

std::int64_t Value::integerValue() const {
  if (const auto* integer = get<std::int64_t>()) return *integer;
  if (const auto* real = get<double>()) return truncated(*real);
  if (const auto* truth = get<bool>()) return *truth ? 1 : 0;
  return 0;
}

double Value::doubleValue() const {
  if (const auto* real = get<double>()) return *real;
  return static_cast<double>(integerValue());
}

bool Value::boolValue() const {
  if (const auto* real = get<double>()) return *real != 0;
  return integerValue() != 0;
}

Result<Value> read(std::span<const std::uint8_t> bytes) {
  if (BinaryObjects::isBinary(bytes)) return readBinary(bytes);
  return readXml({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

}  // namespace pelmora::plist
