#include "sources/SourceEntry.h"

#include "platform/Bookmarks.h"
#include "platform/Log.h"
#include "platform/UserFolders.h"

#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

namespace pelmora::sources {

namespace {

const plist::Value* find(const plist::Dictionary& stored, std::string_view key) {
  const auto at = stored.find(key);
  return at == stored.end() ? nullptr : &at->second;
}

bool isNumber(const plist::Value& value) {
  return value.get<bool>() || value.get<std::int64_t>() || value.get<double>();
}

/// A share of less than nothing, or of no number, cannot be weighed.
bool isChance(const plist::Value& value) {
  const double chance = value.doubleValue();
  return isNumber(value) && std::isfinite(chance) && chance >= 0;
}

/// Fills in the values of one stored entry, with a line for each that is not as it should be.
class StoredValues {
 public:
  StoredValues(const plist::Dictionary& stored, const FilePath& url, platform::Log& log)
      : _stored(stored), _url(url), _log(log) {}

  void readInto(SourceEntry& entry) const {
    const plist::Value* enabled = find(_stored, "enabled");
    if (enabled && isNumber(*enabled)) {
      entry.enabled = enabled->boolValue();
    } else {
      complain("enabled");
    }
    const plist::Value* chance = find(_stored, "chance");
    if (chance && isChance(*chance)) {
      entry.chance = chance->doubleValue();
      entry.isChanceReal = chance->get<double>() != nullptr;
    } else {
      complain("chance");
    }
    readOptionalValuesInto(entry);
  }

 private:
  void readOptionalValuesInto(SourceEntry& entry) const {
    if (const plist::Value* days = find(_stored, "days")) {
      if (isNumber(*days)) {
        entry.days = static_cast<std::uint64_t>(days->integerValue());
      } else {
        complain("days");
      }
    }
    if (const plist::Value* screens = find(_stored, "screens")) {
      if (const auto* text = screens->get<std::string>()) {
        entry.screens = *text;
      } else {
        complain("screens");
      }
    }
  }

  void complain(const char* key) const {
    _log.print("Pelmora: source %s has no usable \"%s\", the default is used", _url.c_str(), key);
  }

  const plist::Dictionary& _stored;
  const FilePath& _url;
  platform::Log& _log;
};

/// The number of the kind that it came as.
plist::Value chanceOf(const SourceEntry& entry) {
  constexpr double kLargestWhole = 9'007'199'254'740'992;  // 2^53
  const bool isWhole = entry.chance <= kLargestWhole && std::trunc(entry.chance) == entry.chance;
  if (entry.isChanceReal || !isWhole) return entry.chance;
  return static_cast<std::int64_t>(entry.chance);
}

/// All that is stored but the bookmark.
plist::Dictionary valuesOf(const SourceEntry& entry) {
  return {{"enabled", entry.enabled},
          {"chance", chanceOf(entry)},
          {"days", static_cast<std::int64_t>(entry.days)},
          {"screens", entry.screens}};
}

}  // namespace

Result<SourceEntry> resolveStoredEntry(const plist::Value& stored,
                                       const platform::Services& services) {
  const auto* dictionary = stored.get<plist::Dictionary>();
  if (!dictionary) return Error{"the source is no dictionary"};
  const plist::Value* value = find(*dictionary, "bookmark");
  const auto* bookmark = value ? value->get<plist::Bytes>() : nullptr;
  if (!bookmark) return Error{"the source has no bookmark"};
  Result<FilePath> url = services.bookmarks.resolve(*bookmark);
  if (!url) return url.error();

  SourceEntry entry;
  entry.url = *std::move(url);
  StoredValues(*dictionary, entry.url, services.log).readInto(entry);
  if (const auto facts = services.files.facts(entry.url, platform::FinalLink::follow)) {
    entry.identity = facts->identity;
  }
  return entry;
}

plist::Dictionary storedForm(const SourceEntry& entry, const platform::Bookmarks& bookmarks) {
  plist::Dictionary stored = valuesOf(entry);
  if (auto bookmark = bookmarks.make(entry.url)) {
    stored.insert_or_assign("bookmark", *std::move(bookmark));
  }
  return stored;
}

plist::Dictionary storedForm(const SourceEntry& entry, plist::Bytes bookmark) {
  plist::Dictionary stored = valuesOf(entry);
  stored.insert_or_assign("bookmark", std::move(bookmark));
  return stored;
}

plist::Array makeDefaultSources(const platform::UserFolders& userFolders,
                                const platform::Bookmarks& bookmarks) {
  const std::vector<FilePath> pictures = userFolders.pictures();
  SourceEntry entry;
  entry.url = pictures.empty() ? FilePath("/Applications") : pictures.front();
  return {storedForm(entry, bookmarks)};
}

}  // namespace pelmora::sources
