#pragma once

#include "platform/linux/index/StoreConnection.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace pelmora::platform {

/// What is counted at most: of files in greater number the newest, and of other texts none that
/// are new.
struct CountingLimits {
  std::size_t files = 200'000;
  std::size_t texts = 50'000;
};
/// In bytes; what is longer is nothing that anybody would choose from a list.
inline constexpr std::size_t kLongestFrequentText = 200;

/// The texts that an attribute (its position in the table) has, those that most files have first,
/// and no more than `most`. Of paths they are the folders', with a slash behind them. What cannot
/// be typed is left out: line breaks, tabs, bytes that are no text. `isOver` is asked between
/// files, and ends it with what was found. Thread: the connection's. Errors: `SqliteError`.
[[nodiscard]] std::vector<std::string> frequentTexts(StoreConnection& connection,
                                                     std::size_t attribute, std::size_t most,
                                                     const std::function<bool()>& isOver,
                                                     const CountingLimits& limits = {});

}  // namespace pelmora::platform
