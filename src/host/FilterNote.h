#pragma once

#include "platform/predicate/Predicate.h"

#include <optional>
#include <string>

namespace pelmora::host {

/// What a person had better know of a filter: that the saver, whose rules are those of an editor of
/// filters, takes it otherwise than it reads. nullopt when it takes it at its word.
[[nodiscard]] std::optional<std::string> noteOnFilter(
    const platform::predicate::Predicate& predicate);

}  // namespace pelmora::host
