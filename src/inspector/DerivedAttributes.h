#pragma once

#include "inspector/EmbeddedData.h"
#include "platform/predicate/Predicate.h"

#include <string_view>
#include <vector>

namespace pelmora::inspector {

/// Reads an attribute that is not just the value of a key.
using DerivedReader = std::vector<platform::predicate::Constant> (*)(const EmbeddedData& data);

/// By the attribute's name; nullptr where its keys are all there is. Thread: any.
[[nodiscard]] DerivedReader derivedReaderOf(std::string_view attribute);

}  // namespace pelmora::inspector
