#include "host/Options.h"
#include "host/ParseValues.h"
#include "host/SourceText.h"
#include "host/WindowId.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace pelmora;
using namespace pelmora::host;

constexpr Option kOptions[] = {
    {"size", "WxH", "a size"},
    {"verbose", nullptr, "a switch"},
};

void check(const Rect& rect) {
  const double side = kLargestSide;
  if (!(rect.size.width >= 1 && rect.size.width <= side)) std::abort();
  if (!(rect.size.height >= 1 && rect.size.height <= side)) std::abort();
}

void checkDays(std::uint64_t days) {
  constexpr std::uint64_t kEvery = 127;
  if (days > kEvery) std::abort();
  if (days != 0 && days != kEvery && *parseDays(textOfDays(days)) != days) std::abort();
}

void readValues(const std::string& word) {
  if (const auto number = parseNumber(word); number && !std::isfinite(*number)) std::abort();
  static_cast<void>(parseInteger(word));
  if (const auto size = parseSize(word)) check({{0, 0}, *size});
  if (const auto geometries = parseGeometries(word)) {
    if (geometries->empty() || geometries->size() > 64) std::abort();
    for (const Rect& each : *geometries) check(each);
  }
  static_cast<void>(parseLocalTime(word));
  if (const auto chance = parseChance(word); chance && !(*chance > 0 && *chance <= 100))
    std::abort();
  if (const auto days = parseDays(word)) checkDays(*days);
  // What is stored of screens is what would be typed again.
  if (const auto screens = parseScreens(word); screens && *parseScreens(*screens) != *screens)
    std::abort();
  if (const auto window = parseWindowId(word)) {
    if (*window == 0 || parseWindowId(std::to_string(*window)) != window) std::abort();
  }
}

}  // namespace

// Any bytes as the words of a command line, which zero bytes end.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  text.push_back('\0');
  std::vector<char*> words;
  for (std::size_t at = 0; at < text.size(); at = text.find('\0', at) + 1) {
    words.push_back(text.data() + at);
  }
  const auto arguments = parseArguments(kOptions, words);
  if (!arguments && arguments.error().message.empty()) std::abort();
  for (const char* word : words) readValues(word);
  return 0;
}
