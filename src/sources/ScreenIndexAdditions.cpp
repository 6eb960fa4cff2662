#include "sources/ScreenIndexAdditions.h"

#include <algorithm>
#include <string>

namespace pelmora::sources {

namespace {

bool hasPiece(std::string_view list, std::string_view piece) {
  for (;;) {
    const std::size_t comma = list.find(',');
    if (list.substr(0, comma) == piece) return true;
    if (comma == std::string_view::npos) return false;
    list.remove_prefix(comma + 1);
  }
}

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

/// Takes the run of digits at the front, without its leading zeros.
std::string_view takeNumber(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
  std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  digits.remove_prefix(std::min(digits.find_first_not_of('0'), digits.size()));
  return digits;
}

}  // namespace

bool includesScreenIndex(std::string_view screens, std::uint64_t index) {
  if (screens.empty() || index == 0) return true;
  if (index < 10) return screens.find(static_cast<char>('0' + index)) != std::string_view::npos;
  return hasPiece(screens, std::to_string(index));
}

std::weak_ordering numericCompare(std::string_view left, std::string_view right) {
  while (!left.empty() && !right.empty()) {
    if (isDigit(left.front()) && isDigit(right.front())) {
      const std::string_view leftNumber = takeNumber(left);
      const std::string_view rightNumber = takeNumber(right);
      if (const auto order = leftNumber.size() <=> rightNumber.size(); order != 0) return order;
      if (const auto order = leftNumber <=> rightNumber; order != 0) return order;
      continue;
    }
    const auto order =
        static_cast<unsigned char>(left.front()) <=> static_cast<unsigned char>(right.front());
    if (order != 0) return order;
    left.remove_prefix(1);
    right.remove_prefix(1);
  }
  return left.size() <=> right.size();
}

}  // namespace pelmora::sources
