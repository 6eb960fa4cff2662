#include "sources/PMFolder.h"

#include "sources/ContentsReader.h"

#include <charconv>
#include <iterator>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace pelmora::sources {

namespace {

void assertOneWayOfContents(const PMFolder::Contents& from) {
  const bool reads = from.fileMan != nullptr;
  const bool isGiven = from.contents || from.contentNames;
  if (reads != isGiven) return;
  throw std::logic_error(
      "PMFolder:39: You really only need to pass one of these; fileMan, or (contents or "
      "contentNames).");
}

SharedNames lastComponents(const std::vector<FilePath>& files) {
  NameListBuilder names;
  for (const FilePath& file : files) names.append(file.lastComponent());
  return names.finish();
}

SharedNames namesOf(const FilePath& folder, const PMFolder::Contents& from) {
  assertOneWayOfContents(from);
  if (from.contentNames) return from.contentNames;
  if (from.contents) return lastComponents(*from.contents);
  return from.fileMan->fileNamesOf(folder);
}

}  // namespace

PMFolder::PMFolder(FilePath folder, bool baseFolder, const Contents& from, double withPriority,
                   std::string forScreens, std::uint64_t onDays)
    : isBaseFolder(baseFolder),
      url(std::move(folder)),
      filenames(namesOf(url, from)),
      priority(withPriority),
      screens(std::move(forScreens)),
      days(onDays) {}

void PMFolder::addSpotlightFilename(std::string name) {
  spotlightFilenames.push_back(std::move(name));
}

std::string PMFolder::description() const {
  char number[400];  // a double may have 309 digits before its point
  const auto [end, error] =
      std::to_chars(number, std::end(number), priority, std::chars_format::fixed, 6);
  std::string text = "PMFolder: base=";
  text += isBaseFolder ? "1, " : "0, ";
  text += url.bytes() + ", priority ";
  text.append(number, error == std::errc() ? end : number);
  text += ", screens " + (screens.empty() ? "all" : screens);
  text += ", days " + std::to_string(days) + ", " + std::to_string(filenames->size()) + " files";
  return text;
}

}  // namespace pelmora::sources
