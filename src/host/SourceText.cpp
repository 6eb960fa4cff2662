#include "host/SourceText.h"

#include "host/ParseValues.h"

#include <algorithm>
#include <array>
#include <vector>

namespace pelmora::host {

namespace {

constexpr std::array<std::string_view, 7> kDays = {"sunday",   "monday", "tuesday", "wednesday",
                                                   "thursday", "friday", "saturday"};
constexpr std::size_t kShortName = 3;
constexpr std::uint64_t kEveryDay = 127;
constexpr std::int64_t kMostScreens = 64;

std::vector<std::string> split(std::string_view text) {
  std::vector<std::string> pieces;
  std::size_t from = 0;
  while (from <= text.size()) {
    const std::size_t comma = std::min(text.find(',', from), text.size());
    pieces.emplace_back(text.substr(from, comma - from));
    from = comma + 1;
  }
  return pieces;
}

std::string lowerCase(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  }
  return text;
}

}  // namespace

Result<double> parseChance(std::string_view text) {
  const Result<double> chance = parseNumber(text);
  if (!chance) return chance;
  if (*chance < kLowestChance || *chance > kHighestChance) {
    return Error{"'" + std::string(text) + "' is not a chance from 0.001 to 100"};
  }
  return chance;
}

Result<std::uint64_t> parseDays(std::string_view text) {
  if (text == "all") return kEveryDay;
  if (text == "none") return std::uint64_t{0};
  std::uint64_t days = 0;
  for (const std::string& piece : split(text)) {
    const std::string name = lowerCase(piece);
    const auto* found = std::find_if(kDays.begin(), kDays.end(), [&name](std::string_view day) {
      return name == day || name == day.substr(0, kShortName);
    });
    if (found == kDays.end()) return Error{"'" + piece + "' is not a day such as sun or monday"};
    days |= std::uint64_t{1} << (found - kDays.begin());
  }
  return days;
}

Result<std::string> parseScreens(std::string_view text) {
  if (text == "all" || text.empty()) return std::string();
  std::string screens;
  for (const std::string& piece : split(text)) {
    const Result<std::int64_t> number = parseInteger(piece);
    if (!number || *number < 1 || *number > kMostScreens) {
      return Error{"'" + piece + "' is not a screen from 1 to 64"};
    }
    if (!screens.empty()) screens += ',';
    screens += std::to_string(*number);
  }
  return screens;
}

std::string textOfDays(std::uint64_t days) {
  if ((days & kEveryDay) == kEveryDay) return "every day";
  std::string text;
  for (std::size_t i = 0; i < kDays.size(); ++i) {
    if (!(days >> i & 1)) continue;
    if (!text.empty()) text += ',';
    text += kDays[i].substr(0, kShortName);
  }
  return text.empty() ? "no day" : text;
}

std::string textOfScreens(const std::string& screens) {
  return screens.empty() ? "all screens" : "screens " + screens;
}

}  // namespace pelmora::host
