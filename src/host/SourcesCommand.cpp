#include "host/Command.h"
#include "host/Options.h"
#include "host/ParseValues.h"
#include "host/PreferenceTools.h"
#include "host/SourceText.h"
#include "platform/linux/BookmarkRecord.h"
#include "platform/PrintableLine.h"

#include <cstdio>
#include <filesystem>
#include <string>

namespace pelmora::host {

namespace {

constexpr Option kOptions[] = {
    {"chance", "N", "add: its relative weight, 0.001 to 100 (default 100)"},
    {"days", "LIST", "add: sun,mon,... or all or none (default all)"},
    {"screens", "LIST", "add: 1,2,... or all (default all)"},
    {"disabled", nullptr, "add: leave it switched off"},
    {"help", nullptr, "show this help"},
};

void printHelp() {
  std::printf(
      "usage: pelmora sources list\n"
      "       pelmora sources add DIR [OPTION]...\n"
      "       pelmora sources remove DIR\n"
      "\n"
      "Lists, adds and removes the folders whose pictures are shown.\n\n%s",
      describeOptions(kOptions).c_str());
}

/// Where a stored entry's folder is now, or was when it was stored.
struct Place {
  std::string path;
  bool found = false;
};

Place placeOf(const PreferenceTools& tools, const plist::Dictionary& entry) {
  const auto bookmark = entry.find("bookmark");
  const auto* bytes = bookmark == entry.end() ? nullptr : bookmark->second.get<plist::Bytes>();
  if (!bytes) return {};
  if (const Result<FilePath> folder = tools.bookmarks.resolve(*bytes))
    return {folder->bytes(), true};
  const auto record = platform::BookmarkRecord::decode(*bytes);
  return {record ? record->path.bytes() : "", false};
}

plist::Value valueOr(const plist::Dictionary& entry, const char* key,
                     const plist::Value& fallback) {
  const auto found = entry.find(key);
  return found == entry.end() ? fallback : found->second;
}

std::string describeEntry(const plist::Dictionary& entry, const Place& place) {
  char chance[32];
  std::snprintf(chance, sizeof chance, "%g%%", valueOr(entry, "chance", 100).doubleValue());
  const auto days = static_cast<std::uint64_t>(valueOr(entry, "days", 127).integerValue());
  const plist::Value screens = valueOr(entry, "screens", "");
  const auto* screensText = screens.get<std::string>();
  std::string text = valueOr(entry, "enabled", true).boolValue() ? "on " : "off";
  text += std::string("  ") + chance + "  " + textOfDays(days) + "  ";
  text += textOfScreens(screensText ? *screensText : "") + "  ";
  text += place.path.empty() ? "(no folder)" : platform::printableLine(place.path);
  return place.found ? text : text + "  (not found)";
}

ExitStatus list(const PreferenceTools& tools) {
  for (const plist::Value& stored :
       tools.preferences.arrayForKey("Sources").value_or(plist::Array())) {
    const auto* entry = stored.get<plist::Dictionary>();
    if (!entry) continue;
    std::printf("%s\n", describeEntry(*entry, placeOf(tools, *entry)).c_str());
  }
  return ExitStatus::success;
}

/// The folder that a word names: absolute, the way it leads to untouched, so that a link stays one.
FilePath folderOf(const std::string& word) {
  std::error_code problem;
  const std::filesystem::path absolute = std::filesystem::absolute(word, problem);
  return FilePath(problem ? word : absolute.lexically_normal().string());
}

/// The entries to go on with: those stored, or the default one if it leads anywhere.
plist::Array editableSources(const PreferenceTools& tools) {
  plist::Array sources = tools.preferences.arrayForKey("Sources").value_or(plist::Array());
  if (tools.preferences.storedValues().contains("Sources")) return sources;
  std::erase_if(sources, [&tools](const plist::Value& stored) {
    const auto* entry = stored.get<plist::Dictionary>();
    return !entry || !placeOf(tools, *entry).found;
  });
  return sources;
}

bool isOf(const PreferenceTools& tools, const plist::Value& stored, const FilePath& folder) {
  const auto* entry = stored.get<plist::Dictionary>();
  if (!entry) return false;
  const Place place = placeOf(tools, *entry);
  if (place.path == folder.bytes()) return true;
  const auto wanted = tools.files.facts(folder, platform::FinalLink::follow);
  const auto actual = tools.files.facts(FilePath(place.path), platform::FinalLink::follow);
  return place.found && wanted && actual && wanted->identity == actual->identity;
}

ExitStatus store(PreferenceTools& tools, plist::Array sources) {
  tools.preferences.setObject("Sources", std::move(sources));
  const Status stored = tools.preferences.synchronize();
  return stored ? ExitStatus::success : failed("sources", stored.error().message);
}

/// The five values of a new entry but for its bookmark, or what is wrong with the options.
Result<plist::Dictionary> newEntry(const Arguments& arguments) {
  const Result<double> chance = parseChance(arguments.value("chance").value_or("100"));
  if (!chance) return Error{"--chance: " + chance.error().message};
  const Result<std::uint64_t> days = parseDays(arguments.value("days").value_or("all"));
  if (!days) return Error{"--days: " + days.error().message};
  const Result<std::string> screens = parseScreens(arguments.value("screens").value_or("all"));
  if (!screens) return Error{"--screens: " + screens.error().message};
  return plist::Dictionary{{"enabled", !arguments.has("disabled")},
                           {"chance", *chance},
                           {"days", static_cast<std::int64_t>(*days)},
                           {"screens", *screens}};
}

ExitStatus add(PreferenceTools& tools, const Arguments& arguments, const std::string& word) {
  Result<plist::Dictionary> entry = newEntry(arguments);
  if (!entry) return badUsage("sources", entry.error().message);
  const FilePath folder = folderOf(word);
  if (!platform::isDirectory(tools.files, folder)) {
    return failed("sources", "'" + platform::printableLine(word) + "' is not a folder");
  }
  plist::Array sources = editableSources(tools);
  for (const plist::Value& stored : sources) {
    if (isOf(tools, stored, folder)) {
      return failed("sources", "'" + platform::printableLine(word) + "' is in the list already");
    }
  }
  Result<plist::Bytes> bookmark = tools.bookmarks.make(folder);
  if (!bookmark) return failed("sources", bookmark.error().message);
  entry->insert_or_assign("bookmark", std::move(*bookmark));
  sources.emplace_back(std::move(*entry));
  return store(tools, std::move(sources));
}

ExitStatus remove(PreferenceTools& tools, const std::string& word) {
  const FilePath folder = folderOf(word);
  plist::Array sources = tools.preferences.arrayForKey("Sources").value_or(plist::Array());
  const auto removed = std::erase_if(
      sources, [&](const plist::Value& stored) { return isOf(tools, stored, folder); });
  if (removed == 0) {
    return failed("sources", "'" + platform::printableLine(word) + "' is not in the list");
  }
  return store(tools, std::move(sources));
}

}  // namespace

ExitStatus runSources(std::span<char*> words) {
  const Result<Arguments> arguments = parseArguments(kOptions, words);
  if (!arguments) return badUsage("sources", arguments.error().message);
  if (arguments->has("help")) {
    printHelp();
    return ExitStatus::success;
  }
  const std::vector<std::string>& given = arguments->positional();
  const std::string verb = given.empty() ? "" : given.front();
  PreferenceTools tools;
  if (verb == "list" && given.size() == 1) return list(tools);
  if (verb == "add" && given.size() == 2) return add(tools, *arguments, given[1]);
  if (verb == "remove" && given.size() == 2) return remove(tools, given[1]);
  return badUsage("sources", "expected list, add DIR or remove DIR");
}

}  // namespace pelmora::host
