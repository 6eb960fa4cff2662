#include "host/Command.h"
#include "host/Options.h"
#include "host/PreferenceText.h"
#include "host/PreferenceTools.h"

#include <algorithm>
#include <cstdio>

namespace pelmora::host {

namespace {

constexpr Option kOptions[] = {{"help", nullptr, "show this help"}};

void printHelp() {
  std::printf(
      "usage: pelmora defaults read [KEY]\n"
      "       pelmora defaults write KEY VALUE\n"
      "       pelmora defaults delete KEY\n"
      "\n"
      "Reads and writes the saver's preferences. A deleted key reads as its default.\n"
      "\n"
      "Keys:\n%s",
      describePreferences().c_str());
}

ExitStatus readOne(const PreferenceTools& tools, const std::string& key) {
  const auto value = tools.preferences.objectForKey(key);
  if (!value) return failed("defaults", "there is no preference '" + key + "'");
  std::printf("%s\n", textOfPreference(key, *value).c_str());
  return ExitStatus::success;
}

ExitStatus readAll(const PreferenceTools& tools) {
  for (const std::string& key : preferenceKeys(tools.preferences.storedValues())) {
    const auto value = tools.preferences.objectForKey(key);
    if (value) std::printf("%s = %s\n", key.c_str(), textOfPreference(key, *value).c_str());
  }
  return ExitStatus::success;
}

ExitStatus store(PreferenceTools& tools) {
  const Status stored = tools.preferences.synchronize();
  return stored ? ExitStatus::success : failed("defaults", stored.error().message);
}

ExitStatus write(PreferenceTools& tools, const std::string& key, const std::string& given) {
  Result<plist::Value> value = parsePreference(key, given);
  if (!value) return badUsage("defaults", value.error().message);
  if (const auto text = noteOnPreference(key, *value)) note("defaults", *text);
  tools.preferences.setObject(key, std::move(*value));
  return store(tools);
}

ExitStatus remove(PreferenceTools& tools, const std::string& key) {
  if (!tools.preferences.storedValues().contains(key)) {
    return failed("defaults", "the preference '" + key + "' is not set");
  }
  tools.preferences.removeObject(key);
  return store(tools);
}

}  // namespace

ExitStatus runDefaults(std::span<char*> words) {
  // A value may begin with a dash ("write Delay -1" is an error of its own), so only the first word
  // is looked at for options.
  const Result<Arguments> options =
      parseArguments(kOptions, words.first(std::min<std::size_t>(words.size(), 2)));
  if (!options) return badUsage("defaults", options.error().message);
  if (options->has("help")) {
    printHelp();
    return ExitStatus::success;
  }
  const std::vector<std::string> given(words.begin() + 1, words.end());
  const std::string verb = given.empty() ? "" : given.front();
  PreferenceTools tools;
  if (verb == "read" && given.size() == 1) return readAll(tools);
  if (verb == "read" && given.size() == 2) return readOne(tools, given[1]);
  if (verb == "write" && given.size() == 3) return write(tools, given[1], given[2]);
  if (verb == "delete" && given.size() == 2) return remove(tools, given[1]);
  return badUsage("defaults", "expected read [KEY], write KEY VALUE or delete KEY");
}

}  // namespace pelmora::host
