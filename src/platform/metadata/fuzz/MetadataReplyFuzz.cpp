#include "platform/metadata/MetadataProtocol.h"
#include "platform/PlainText.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace pelmora::platform;
using namespace pelmora::platform::metadata;

void require(bool holds) {
  if (!holds) std::abort();
}

void checkValue(const Attribute& attribute, const predicate::Constant& value) {
  if (attribute.type == ValueType::text) {
    const auto* const text = value.get<std::string>();
    require(text && !text->empty() && text->size() <= kMaxTextBytes && isPlainText(*text));
  } else if (attribute.type == ValueType::integer) {
    require(value.get<std::int64_t>() != nullptr);
  } else if (attribute.type == ValueType::real) {
    require(value.get<double>() && std::isfinite(*value.get<double>()));
  } else {
    const auto* const date = value.get<pelmora::ReferenceTime>();
    require(date && std::isfinite(date->seconds));
  }
}

}  // namespace

// Any bytes as what follows an inspector's reply: what is accepted is as the table says, and the
// same when it is sent once more.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto metadata = decodeMetadata(std::as_bytes(std::span(data, size)));
  if (!metadata) {
    require(!metadata.error().message.empty());
    return 0;
  }
  for (const auto& [position, values] : metadata->all()) {
    const Attribute& attribute = attributeTable()[position];
    require(attribute.origin != Origin::file && !values.empty());
    require(values.size() <= (attribute.hasSeveral ? kMaxValues : 1));
    for (const predicate::Constant& value : values) checkValue(attribute, value);
  }
  const auto again = decodeMetadata(encodeMetadata(*metadata));
  require(again && *again == *metadata);
  return 0;
}
