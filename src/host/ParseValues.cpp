#include "host/ParseValues.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string>

namespace pelmora::host {

namespace {

constexpr std::size_t kMostDisplays = 64;

Error expected(std::string_view what, std::string_view text) {
  return Error{"'" + std::string(text) + "' is not " + std::string(what)};
}

/// Takes a number off the front of `text`; a leading '+' is skipped.
template <typename T>
bool takeNumber(std::string_view& text, T& number) {
  const char* first = text.data();
  const char* last = first + text.size();
  const auto [end, problem] = std::from_chars(first, last, number);
  if (problem != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - first));
  return true;
}

bool takeChar(std::string_view& text, char wanted) {
  if (text.empty() || text.front() != wanted) return false;
  text.remove_prefix(1);
  return true;
}

bool takeSize(std::string_view& text, Size& size) {
  int width = 0;
  int height = 0;
  if (!takeNumber(text, width) || !takeChar(text, 'x') || !takeNumber(text, height)) return false;
  if (width < 1 || height < 1 || width > kLargestSide || height > kLargestSide) return false;
  size = {static_cast<double>(width), static_cast<double>(height)};
  return true;
}

bool takeOffset(std::string_view& text, double& offset) {
  if (!text.empty() && text.front() != '-' && !takeChar(text, '+')) return false;
  int number = 0;
  if (!takeNumber(text, number)) return false;
  offset = number;
  return true;
}

}  // namespace

Result<double> parseNumber(std::string_view text) {
  std::string_view rest = text;
  double number = 0;
  if (!takeNumber(rest, number) || !rest.empty() || !std::isfinite(number)) {
    return expected("a number", text);
  }
  return number;
}

Result<std::int64_t> parseInteger(std::string_view text) {
  std::string_view rest = text;
  std::int64_t number = 0;
  if (!takeNumber(rest, number) || !rest.empty()) return expected("a whole number", text);
  return number;
}

Result<Size> parseSize(std::string_view text) {
  std::string_view rest = text;
  Size size;
  if (!takeSize(rest, size) || !rest.empty()) return expected("a size such as 1920x1080", text);
  return size;
}

Result<Rect> parseGeometry(std::string_view text) {
  std::string_view rest = text;
  Rect rect;
  if (!takeSize(rest, rect.size) || !takeOffset(rest, rect.origin.x) ||
      !takeOffset(rest, rect.origin.y) || !rest.empty()) {
    return expected("a display such as 1920x1080+0+0", text);
  }
  return rect;
}

Result<std::vector<Rect>> parseGeometries(std::string_view text) {
  std::vector<Rect> rects;
  std::size_t from = 0;
  while (from <= text.size()) {
    const std::size_t comma = std::min(text.find(',', from), text.size());
    Result<Rect> rect = parseGeometry(text.substr(from, comma - from));
    if (!rect) return rect.error();
    rects.push_back(*rect);
    if (rects.size() > kMostDisplays) return Error{"there are more than 64 displays"};
    from = comma + 1;
  }
  return rects;
}

Result<ReferenceTime> parseLocalTime(std::string_view text) {
  const std::string copy(text);
  std::tm fields{};
  const char* end = strptime(copy.c_str(), "%Y-%m-%dT%H:%M:%S", &fields);
  if (!end || *end != '\0') return expected("a time such as 2026-11-21T12:00:00", text);
  fields.tm_isdst = -1;
  const std::time_t time = std::mktime(&fields);
  return ReferenceTime::fromPosix(time, 0);
}

}  // namespace pelmora::host
