#include "platform/players/TrackScript.h"

#include <algorithm>

namespace pelmora::platform::players {

namespace {

constexpr std::size_t kLongestScript = 4096;
constexpr std::size_t kLongestIdentifier = 255;
constexpr std::string_view kBlanks = " \t\r";

std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

bool isLetterOrDigit(char each) {
  return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
         (each >= '0' && each <= '9');
}

bool isKeyword(std::string_view text) {
  return text.size() == 4 && std::all_of(text.begin(), text.end(), isLetterOrDigit);
}

bool isIdentifier(std::string_view text) {
  return !text.empty() && text.size() <= kLongestIdentifier &&
         std::all_of(text.begin(), text.end(), [](char each) {
           return isLetterOrDigit(each) || each == '.' || each == '-' || each == '_';
         });
}

std::optional<TrackProperty> propertyNamed(std::string_view name) {
  if (name == "xesam:title") return TrackProperty::title;
  if (name == "xesam:artist") return TrackProperty::artist;
  if (name == "xesam:album") return TrackProperty::album;
  if (name == "xesam:userRating") return TrackProperty::userRating;
  return std::nullopt;
}

/// "tell IDENTIFIER". False for any other line.
bool readTell(std::string_view line, TrackScript& script) {
  constexpr std::string_view kTell = "tell ";
  if (!line.starts_with(kTell) || !script.application.empty()) return false;
  const std::string_view identifier = trimmed(line.substr(kTell.size()));
  if (!isIdentifier(identifier)) return false;
  script.application = identifier;
  return true;
}

/// "KEYWORD = PROPERTY". False for any other line.
bool readField(std::string_view line, TrackScript& script) {
  const std::size_t sign = line.find('=');
  if (sign == std::string_view::npos || script.application.empty()) return false;
  const std::string_view keyword = trimmed(line.substr(0, sign));
  const std::optional<TrackProperty> property = propertyNamed(trimmed(line.substr(sign + 1)));
  if (!isKeyword(keyword) || !property) return false;
  return script.fields.emplace(keyword, *property).second;
}

template <typename T>
void put(const std::string& keyword, const std::optional<T>& told, ScriptRecord& record) {
  if (told) record.emplace(keyword, *told);
}

}  // namespace

std::optional<TrackScript> parseTrackScript(std::string_view text) {
  if (text.size() > kLongestScript) return std::nullopt;
  TrackScript script;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.empty() || line.starts_with('#')) continue;
    if (!readTell(line, script) && !readField(line, script)) return std::nullopt;
  }
  if (script.fields.empty()) return std::nullopt;
  return script;
}

ScriptRecord recordOf(const TrackScript& script, const Track& track) {
  ScriptRecord record;
  for (const auto& [keyword, property] : script.fields) {
    switch (property) {
      case TrackProperty::title:
        put(keyword, track.name, record);
        break;
      case TrackProperty::artist:
        put(keyword, track.artist, record);
        break;
      case TrackProperty::album:
        put(keyword, track.album, record);
        break;
      case TrackProperty::userRating:
        put(keyword, track.rating, record);
        break;
    }
  }
  return record;
}

}  // namespace pelmora::platform::players
