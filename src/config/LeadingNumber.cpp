#include "config/LeadingNumber.h"

#include <cctype>
#include <charconv>
#include <limits>
#include <string>
#include <system_error>

namespace pelmora::config {

double leadingNumber(std::string_view text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())) != 0) {
    text.remove_prefix(1);
  }
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  // Not "inf", and not a second sign.
  const bool isNumber =
      !text.empty() &&
      (text.front() == '.' || std::isdigit(static_cast<unsigned char>(text.front())) != 0);
  if (!isNumber) return 0;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error == std::errc::result_out_of_range) {
    const std::string_view number(text.data(), static_cast<std::size_t>(end - text.data()));
    value = number.find("e-") == number.npos && number.find("E-") == number.npos
                ? std::numeric_limits<double>::infinity()
                : 0;
  }
  return isNegative ? -value : value;
}

}  // namespace pelmora::config
