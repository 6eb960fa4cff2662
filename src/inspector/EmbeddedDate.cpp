#include "inspector/EmbeddedDate.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>

namespace pelmora::inspector {

namespace {

/// Takes what it knows off the begin of a text.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : _text(text) { skipBlanks(); }

  [[nodiscard]] bool isAtEnd() const { return _text.empty(); }
  bool skip(std::string_view any) {
    if (_text.empty() || any.find(_text.front()) == std::string_view::npos) return false;
    _text.remove_prefix(1);
    return true;
  }
  void skipBlanks() {
    while (skip(" ")) {
    }
  }
  /// So many digits.
  std::optional<int> number(std::size_t digits) {
    if (_text.size() < digits) return std::nullopt;
    int value = 0;
    for (const char each : _text.substr(0, digits)) {
      if (each < '0' || each > '9') return std::nullopt;
      value = 10 * value + (each - '0');
    }
    _text.remove_prefix(digits);
    return value;
  }
  /// The sign of an offset: 1, -1, or 0 where there is none.
  int sign() { return skip("+") ? 1 : skip("-") ? -1 : 0; }
  void skipDigits() {
    while (number(1)) {
    }
  }

 private:
  std::string_view _text;
};

int daysOf(int month, int year) {
  constexpr std::array kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool isLeap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return kDays[static_cast<std::size_t>(month - 1)] + (month == 2 && isLeap ? 1 : 0);
}

bool takeDay(Scanner& scanner, std::tm& time) {
  const auto year = scanner.number(4);
  if (!year || *year == 0) return false;
  const auto month = scanner.skip(":-") ? scanner.number(2) : 1;
  if (!month || *month < 1 || *month > 12) return false;
  const auto day = scanner.skip(":-") ? scanner.number(2) : 1;
  if (!day || *day < 1 || *day > daysOf(*month, *year)) return false;
  time.tm_year = *year - 1900;
  time.tm_mon = *month - 1;
  time.tm_mday = *day;
  return true;
}

bool takeTime(Scanner& scanner, std::tm& time) {
  scanner.skip("T");
  scanner.skipBlanks();
  if (scanner.isAtEnd()) return true;
  const auto hour = scanner.number(2);
  const auto minute = scanner.skip(":") ? scanner.number(2) : std::nullopt;
  if (!hour || !minute) return false;
  const auto second = scanner.skip(":") ? scanner.number(2) : 0;
  if (!second || *hour > 23 || *minute > 59 || *second > 60) return false;
  if (scanner.skip(".")) scanner.skipDigits();
  time.tm_hour = *hour;
  time.tm_min = *minute;
  time.tm_sec = *second;
  return true;
}

/// Seconds east of Greenwich; nullopt where none are told.
std::optional<int> takeOffset(Scanner& scanner) {
  scanner.skipBlanks();
  if (scanner.skip("Zz")) return 0;
  const int sign = scanner.sign();
  const auto hours = sign != 0 ? scanner.number(2) : std::nullopt;
  if (!hours) return std::nullopt;
  scanner.skip(":");
  const int minutes = scanner.number(2).value_or(0);
  return *hours <= 14 && minutes <= 59 ? std::optional(sign * (*hours * 60 + minutes) * 60)
                                       : std::nullopt;
}

}  // namespace

std::optional<ReferenceTime> dateFromText(std::string_view text) {
  Scanner scanner(text);
  std::tm time{};
  time.tm_isdst = -1;
  if (!takeDay(scanner, time) || !takeTime(scanner, time)) return std::nullopt;
  const std::optional<int> offset = takeOffset(scanner);
  const std::time_t seconds = offset ? timegm(&time) - *offset : mktime(&time);
  return ReferenceTime::fromPosix(seconds, 0);
}

}  // namespace pelmora::inspector
