#pragma once

#include "shared/Result.h"

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::host {

/// One option that a command understands: `--name`, or `--name ARGUMENT`.
struct Option {
  const char* name;
  const char* argument;  // what to call its argument in the help; null when it takes none
  const char* help;
};

/// What was given on a command line. Values are bytes: file names need not be UTF-8.
class Arguments {
 public:
  [[nodiscard]] bool has(std::string_view option) const { return _options.contains(option); }
  [[nodiscard]] std::optional<std::string> value(std::string_view option) const;
  [[nodiscard]] const std::vector<std::string>& positional() const { return _positional; }

 private:
  friend Result<Arguments> parseArguments(std::span<const Option>, std::span<char* const>);
  std::map<std::string, std::string, std::less<>> _options;
  std::vector<std::string> _positional;
};

/// Takes a command's words apart; `words[0]` is the command's own name. One or two dashes, options
/// and other words in any order, `--` ends the options. Errors name the word that is wrong.
Result<Arguments> parseArguments(std::span<const Option> options, std::span<char* const> words);

/// The options, one a line, for a command's help.
[[nodiscard]] std::string describeOptions(std::span<const Option> options);

}  // namespace pelmora::host
