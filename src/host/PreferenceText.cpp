#include "host/PreferenceText.h"

#include "host/FilterNote.h"
#include "host/ParseValues.h"
#include "platform/predicate/PredicateArchive.h"
#include "platform/predicate/PredicateText.h"

#include <algorithm>
#include <charconv>

namespace pelmora::host {

namespace {

constexpr double kShortestDelay = 0.5;  // seconds
constexpr std::int64_t kMostImages = 1000;

Result<plist::Value> parseSwitch(const std::string& text) {
  if (text == "1" || text == "true" || text == "yes" || text == "on") return plist::Value(1);
  if (text == "0" || text == "false" || text == "no" || text == "off") return plist::Value(0);
  return Error{"'" + text + "' is not 0 or 1"};
}

Result<plist::Value> parseCount(const std::string& text) {
  const Result<std::int64_t> number = parseInteger(text);
  if (!number) return number.error();
  if (*number < 1 || *number > kMostImages) return Error{"'" + text + "' is not from 1 to 1000"};
  return plist::Value(*number);
}

Result<plist::Value> parseDelay(const std::string& text) {
  const Result<double> seconds = parseNumber(text);
  if (!seconds) return seconds.error();
  if (*seconds < kShortestDelay) return Error{"'" + text + "' is less than 0.5 seconds"};
  return plist::Value(*seconds);
}

Result<plist::Value> parseTag(const std::string& text) {
  const Result<std::int64_t> number = parseInteger(text);
  if (!number) return number.error();
  return plist::Value(*number);
}

Result<plist::Value> refuseSources(const std::string&) {
  return Error{"Sources is a list; edit it with 'pelmora sources'"};
}

Result<plist::Value> parseFilter(const std::string& text) {
  const auto predicate = platform::predicate::parsePredicate(text);
  if (!predicate) return predicate.error();
  Result<plist::Bytes> archive = platform::predicate::writePredicateArchive(*predicate);
  if (!archive) return archive.error();
  return plist::Value(*std::move(archive));
}

Result<plist::Value> parseAnything(const std::string& text) {
  if (text == "true") return plist::Value(true);
  if (text == "false") return plist::Value(false);
  if (const Result<std::int64_t> number = parseInteger(text)) return plist::Value(*number);
  if (const Result<double> number = parseNumber(text)) return plist::Value(*number);
  return plist::Value(text);
}

struct KnownKey {
  const char* name;
  const char* meaning;
  Result<plist::Value> (*parse)(const std::string& text);
};

constexpr KnownKey kKnownKeys[] = {
    {"Delay", "seconds between two new pictures, at least 0.5", parseDelay},
    {"FilterPredicate", "shows the files for which it holds; see docs/filters.md", parseFilter},
    {"NumImages", "how many pictures lie on a display at once", parseCount},
    {"ShowiTunesTrack", "1 shows the track that is playing", parseSwitch},
    {"Sources", "the picture folders; see 'pelmora sources'", refuseSources},
    {"UsePolaroid", "1 mounts the pictures in instant-photo frames", parseSwitch},
    {"iTunesTrackType", "how the track shows: 1 fades, 2 flies, 0 stands still", parseTag},
};

const KnownKey* findKey(std::string_view name) {
  const auto* found = std::find_if(std::begin(kKnownKeys), std::end(kKnownKeys),
                                   [name](const KnownKey& key) { return name == key.name; });
  return found == std::end(kKnownKeys) ? nullptr : found;
}

std::string quoted(const std::string& text) {
  std::string json = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') json += '\\';
    if (static_cast<unsigned char>(c) < 0x20) {
      constexpr const char* kHex = "0123456789abcdef";
      json += std::string("\\u00") + kHex[(c >> 4) & 0xF] + kHex[c & 0xF];
    } else {
      json += c;
    }
  }
  return json + "\"";
}

std::string numberText(double number) {
  char text[64];
  const auto end = std::to_chars(text, text + sizeof text, number).ptr;
  return {text, end};
}

/// One overload a type of value.
struct Describe {
  std::string operator()(std::monostate) const { return "null"; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(std::int64_t value) const { return std::to_string(value); }
  std::string operator()(double value) const { return numberText(value); }
  std::string operator()(ReferenceTime value) const { return numberText(value.seconds); }
  std::string operator()(const std::string& value) const { return quoted(value); }
  std::string operator()(const plist::Bytes& value) const {
    return "\"<" + std::to_string(value.size()) + " bytes>\"";
  }
  std::string operator()(const plist::Uid& value) const { return std::to_string(value.index); }
  std::string operator()(const plist::Array& values) const {
    std::string text = "[";
    for (const plist::Value& value : values) {
      if (text.size() > 1) text += ", ";
      text += textOfPreference(value);
    }
    return text + "]";
  }
  std::string operator()(const plist::Dictionary& values) const {
    std::string text = "{";
    for (const auto& [key, value] : values) {
      if (text.size() > 1) text += ", ";
      text += quoted(key) + ": " + textOfPreference(value);
    }
    return text + "}";
  }
};

/// The filter that a preference holds, if that is what it is.
std::optional<platform::predicate::Predicate> filterIn(std::string_view key,
                                                       const plist::Value& value) {
  const auto* archive = key == "FilterPredicate" ? value.get<plist::Bytes>() : nullptr;
  if (!archive) return std::nullopt;
  auto predicate = platform::predicate::readPredicateArchive(*archive);
  return predicate ? std::optional(*std::move(predicate)) : std::nullopt;
}

}  // namespace

Result<plist::Value> parsePreference(std::string_view key, const std::string& text) {
  const KnownKey* known = findKey(key);
  Result<plist::Value> value = known ? known->parse(text) : parseAnything(text);
  if (!value && known) return Error{std::string(key) + ": " + value.error().message};
  return value;
}

std::string textOfPreference(const plist::Value& value) {
  return std::visit(Describe(), value.storage());
}

std::string textOfPreference(std::string_view key, const plist::Value& value) {
  if (const auto predicate = filterIn(key, value)) {
    return quoted(platform::predicate::textOf(*predicate));
  }
  return textOfPreference(value);
}

std::optional<std::string> noteOnPreference(std::string_view key, const plist::Value& value) {
  const auto predicate = filterIn(key, value);
  return predicate ? noteOnFilter(*predicate) : std::nullopt;
}

std::vector<std::string> preferenceKeys(const plist::Dictionary& stored) {
  std::vector<std::string> keys;
  for (const KnownKey& key : kKnownKeys) keys.emplace_back(key.name);
  for (const auto& [key, value] : stored) {
    if (!findKey(key)) keys.push_back(key);
  }
  return keys;
}

std::string describePreferences() {
  std::string text;
  for (const KnownKey& key : kKnownKeys) {
    std::string name = std::string("  ") + key.name;
    name.resize(20, ' ');
    text += name + key.meaning + "\n";
  }
  return text;
}

}  // namespace pelmora::host
