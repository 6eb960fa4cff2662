#include "platform/XmlScalars.h"

#include <charconv>
#include <chrono>

namespace pelmora::plist {

namespace {

constexpr std::string_view kBlank = " \t\r\n";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlank);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

/// The whole of `text` as a number; nullopt when anything is left over.
template <typename Number, typename... Base>
std::optional<Number> wholly(std::string_view text, Base... base) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base...);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

/// Decimal digits at a fixed place of a date.
std::optional<int> digits(std::string_view text, std::size_t at, std::size_t count) {
  const std::string_view part = text.substr(at, count);
  if (part.find_first_not_of("0123456789") != std::string_view::npos) return std::nullopt;
  return wholly<int>(part);
}

/// The six bits of a base 64 character.
std::optional<std::uint32_t> sixBits(char c) {
  const auto from = [c](char first, int value) {
    return static_cast<std::uint32_t>(c - first + value);
  };
  if (c >= 'A' && c <= 'Z') return from('A', 0);
  if (c >= 'a' && c <= 'z') return from('a', 26);
  if (c >= '0' && c <= '9') return from('0', 52);
  if (c == '+') return 62;
  if (c == '/') return 63;
  return std::nullopt;
}

}  // namespace

std::optional<std::int64_t> integerFromText(std::string_view text) {
  text = trimmed(text);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const bool hex = text.starts_with("0x") || text.starts_with("0X");
  if (hex) text.remove_prefix(2);
  const auto magnitude = wholly<std::uint64_t>(text, hex ? 16 : 10);
  constexpr std::uint64_t kSignBit = 1ULL << 63;
  if (!magnitude || *magnitude > kSignBit || (*magnitude == kSignBit && !negative)) {
    return std::nullopt;
  }
  return static_cast<std::int64_t>(negative ? 0 - *magnitude : *magnitude);
}

std::optional<double> realFromText(std::string_view text) {
  text = trimmed(text);
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  return wholly<double>(text);
}

std::optional<ReferenceTime> dateFromText(std::string_view text) {
  text = trimmed(text);
  constexpr std::string_view kForm = "0000-00-00T00:00:00Z";
  if (text.size() != kForm.size()) return std::nullopt;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    if (kForm[i] != '0' && text[i] != kForm[i]) return std::nullopt;
  }
  const auto year = digits(text, 0, 4), month = digits(text, 5, 2), day = digits(text, 8, 2);
  const auto hour = digits(text, 11, 2), minute = digits(text, 14, 2), second = digits(text, 17, 2);
  if (!year || !month || !day || !hour || !minute || !second) return std::nullopt;

  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok() || *hour > 23 || *minute > 59 || *second > 60) return std::nullopt;
  const long long days = std::chrono::sys_days(date).time_since_epoch().count();
  return ReferenceTime::fromPosix(days * 86400 + *hour * 3600 + *minute * 60 + *second, 0);
}

std::optional<Bytes> dataFromText(std::string_view text) {
  Bytes bytes;
  std::uint32_t group = 0;
  int characters = 0;
  int padding = 0;
  for (const char c : text) {
    if (kBlank.find(c) != std::string_view::npos) continue;
    const auto bits = c == '=' ? 0 : sixBits(c);
    if (!bits || (padding > 0 && c != '=')) return std::nullopt;
    padding += c == '=' ? 1 : 0;
    group = group << 6 | *bits;
    if (++characters < 4) continue;
    if (padding > 2) return std::nullopt;
    for (int i = 0; i < 3 - padding; ++i) {
      bytes.push_back(static_cast<std::uint8_t>(group >> (16 - 8 * i)));
    }
    // A padded group is the last: what follows it but blanks is refused above.
    group = 0;
    characters = 0;
  }
  if (characters != 0 || padding > 2) return std::nullopt;
  return bytes;
}

}  // namespace pelmora::plist
