#include "host/Options.h"

#include <getopt.h>
#include <algorithm>

namespace pelmora::host {

namespace {

std::vector<::option> getoptTable(std::span<const Option> options) {
  std::vector<::option> table;
  for (const Option& each : options) {
    table.push_back({each.name, each.argument ? required_argument : no_argument, nullptr, 0});
  }
  table.push_back({nullptr, 0, nullptr, 0});
  return table;
}

}  // namespace

std::optional<std::string> Arguments::value(std::string_view option) const {
  const auto found = _options.find(option);
  if (found == _options.end()) return std::nullopt;
  return found->second;
}

Result<Arguments> parseArguments(std::span<const Option> options, std::span<char* const> words) {
  const std::vector<::option> table = getoptTable(options);
  std::vector<char*> reordered(words.begin(), words.end());
  const int count = static_cast<int>(reordered.size());
  reordered.push_back(nullptr);
  Arguments arguments;
  opterr = 0;
  optind = 0;  // 0, not 1: starts glibc's parser anew
  for (;;) {
    int index = 0;
    const int found = getopt_long_only(count, reordered.data(), ":", table.data(), &index);
    if (found == -1) break;
    const std::string word = reordered[static_cast<std::size_t>(optind - 1)];
    if (found == '?') return Error{"the option '" + word + "' is not known"};
    if (found == ':') return Error{"the option '" + word + "' needs a value"};
    arguments._options[table[static_cast<std::size_t>(index)].name] = optarg ? optarg : "";
  }
  for (int i = optind; i < count; ++i) {
    arguments._positional.emplace_back(reordered[static_cast<std::size_t>(i)]);
  }
  return arguments;
}

std::string describeOptions(std::span<const Option> options) {
  std::string text;
  for (const Option& each : options) {
    const bool isLetter = each.name[1] == '\0';
    std::string name = std::string(isLetter ? "  -" : "  --") + each.name;
    if (each.argument) name += std::string(" ") + each.argument;
    name.resize(std::max<std::size_t>(name.size() + 2, 26), ' ');
    text += name + each.help + "\n";
  }
  return text;
}

}  // namespace pelmora::host
