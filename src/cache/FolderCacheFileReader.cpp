#include "cache/FolderCacheFile.h"
#include "platform/ArchiveObjects.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

namespace pelmora::cache {

namespace {

using plist::ArchiveObjects;
using plist::BinaryObjects;
using plist::ObjectType;
using plist::ObjectView;

constexpr const char* kTooLarge = "the cache is too large";
constexpr std::string_view kNeverInNames("/\0", 2);

/// Whether a word holds a zero byte.
constexpr std::uint64_t hasZero(std::uint64_t word) {
  return (word - 0x0101010101010101) & ~word & 0x8080808080808080;
}

/// Whether text needs no second look to be a file name: ASCII, and neither of the two characters
/// that no name can hold. Eight at a time, since a cache holds a million names.
bool isPlainName(std::string_view text) {
  constexpr std::uint64_t kSlashes = 0x2F2F2F2F2F2F2F2F;
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  const auto isPlain = [](std::uint64_t word) {
    return ((word & kHighBits) | hasZero(word) | hasZero(word ^ kSlashes)) == 0;
  };
  std::size_t at = 0;
  for (; at + 8 <= text.size(); at += 8) {
    std::uint64_t word = 0;
    std::memcpy(&word, text.data() + at, 8);
    if (!isPlain(word)) return false;
  }
  std::uint64_t rest = 0x2020202020202020;
  std::memcpy(&rest, text.data() + at, text.size() - at);
  return isPlain(rest);
}

/// How much text a file may unfold to. A name that many folders share is in the file once, so a
/// small hostile file could fill the memory. A million names of 60 bytes, each in every folder,
/// still fit.
class TextBudget {
 public:
  explicit TextBudget(std::size_t fileSize) : _left(std::min(kFlat + kPerByte * fileSize, kMost)) {}

  [[nodiscard]] bool spend(std::size_t bytes) {
    if (bytes > _left) return false;
    _left -= bytes;
    return true;
  }

 private:
  static constexpr std::size_t kFlat = 4 << 20;
  static constexpr std::size_t kPerByte = 32;
  static constexpr std::size_t kMost = 1 << 30;

  std::size_t _left;
};

class Reader {
 public:
  Reader(const ArchiveObjects& archive, std::size_t fileSize)
      : _archive(archive), _budget(fileSize) {}

  std::optional<FolderCacheFile::Entries> entries();
  [[nodiscard]] const char* problem() const { return _problem; }

 private:
  struct Pairs {
    ObjectView keys;
    ObjectView values;
  };

  struct Fields {
    std::optional<ReferenceTime> mdate;
    SharedNames names;
    SharedNames folderNames;
  };

  std::optional<Pairs> pairs(std::uint32_t number);
  std::optional<FolderCacheFile::Entry> entry(std::uint32_t number);
  bool addField(std::string_view key, std::uint32_t number, Fields& fields);
  std::optional<ReferenceTime> date(std::uint32_t number);
  SharedNames names(std::uint32_t number);
  bool addName(std::uint32_t number, NameListBuilder& builder);
  std::optional<std::string> text(std::uint32_t number);
  std::optional<std::string> textOf(const ObjectView& object);
  std::optional<std::uint32_t> element(const ObjectView& numbers, std::uint64_t i);
  std::nullopt_t fail(const char* problem) {
    _problem = problem;
    return std::nullopt;
  }

  const ArchiveObjects& _archive;
  TextBudget _budget;
  const char* _problem = "";
};

std::optional<FolderCacheFile::Entries> Reader::entries() {
  const std::optional<Pairs> root = pairs(_archive.root());
  if (!root) return std::nullopt;
  FolderCacheFile::Entries entries;
  for (std::uint64_t i = 0; i < root->keys.count; ++i) {
    const std::optional<std::uint32_t> key = element(root->keys, i);
    const std::optional<std::uint32_t> value = element(root->values, i);
    if (!key || !value) return std::nullopt;
    std::optional<std::string> path = text(*key);
    if (!path) return std::nullopt;
    if (!path->starts_with('/') || path->find('\0') != std::string::npos) {
      return fail("a folder of the cache is no path");
    }
    std::optional<FolderCacheFile::Entry> read = entry(*value);
    if (!read) return std::nullopt;
    if (!entries.emplace(FilePath(std::move(*path)), std::move(*read)).second) {
      return fail("a folder of the cache appears twice");
    }
  }
  return entries;
}

std::optional<Reader::Pairs> Reader::pairs(std::uint32_t number) {
  const std::optional<ObjectView> object = _archive.object(number);
  if (!object || !plist::isDictionaryClass(_archive.className(*object))) {
    return fail("the cache holds something else where a dictionary is due");
  }
  const std::optional<ObjectView> keys = _archive.numbers(*object, "NS.keys");
  const std::optional<ObjectView> values = _archive.numbers(*object, "NS.objects");
  if (!keys || !values || keys->count != values->count) {
    return fail("a dictionary of the cache is damaged");
  }
  return Pairs{*keys, *values};
}

std::optional<FolderCacheFile::Entry> Reader::entry(std::uint32_t number) {
  const std::optional<Pairs> dictionary = pairs(number);
  if (!dictionary) return std::nullopt;
  constexpr std::uint64_t kMostFields = 16;
  if (dictionary->keys.count > kMostFields)
    return fail("a folder of the cache has too many fields");

  Fields fields;
  for (std::uint64_t i = 0; i < dictionary->keys.count; ++i) {
    const std::optional<std::uint32_t> key = element(dictionary->keys, i);
    const std::optional<std::uint32_t> value = element(dictionary->values, i);
    if (!key || !value) return std::nullopt;
    const std::optional<std::string> name = text(*key);
    if (!name || !addField(*name, *value, fields)) return std::nullopt;
  }
  if (!fields.mdate || !fields.names) {
    return fail("a folder of the cache lacks its date or its names");
  }
  return FolderCacheFile::Entry{.mdate = *fields.mdate,
                                .names = std::move(fields.names),
                                .folderNames = std::move(fields.folderNames),
                                .accessed = false};
}

/// Fields of other names, the marks of use among them, are passed over.
bool Reader::addField(std::string_view key, std::uint32_t number, Fields& fields) {
  const bool appearedBefore = (key == "mdate" && fields.mdate) ||
                              (key == "names" && fields.names) ||
                              (key == "folderNames" && fields.folderNames);
  if (appearedBefore) {
    _problem = "a field of the cache appears twice";
    return false;
  }
  if (key == "mdate") return (fields.mdate = date(number)).has_value();
  if (key == "names") return (fields.names = names(number)) != nullptr;
  if (key == "folderNames") return (fields.folderNames = names(number)) != nullptr;
  return true;
}

std::optional<ReferenceTime> Reader::date(std::uint32_t number) {
  const std::optional<ObjectView> object = _archive.object(number);
  if (!object || _archive.className(*object) != "NSDate") {
    return fail("a folder of the cache has no date");
  }
  const std::optional<ObjectView> time = _archive.resolvedField(*object, "NS.time");
  const std::optional<double> seconds = time ? BinaryObjects::real(*time) : std::nullopt;
  if (!seconds || !std::isfinite(*seconds)) return fail("a date of the cache is none");
  return ReferenceTime{*seconds};
}

SharedNames Reader::names(std::uint32_t number) {
  const std::optional<ObjectView> object = _archive.object(number);
  const bool isArray = object && plist::isArrayClass(_archive.className(*object));
  const std::optional<ObjectView> numbers =
      isArray ? _archive.numbers(*object, "NS.objects") : std::nullopt;
  if (!numbers) {
    _problem = "a folder of the cache has something else than names";
    return nullptr;
  }
  NameListBuilder builder;
  for (std::uint64_t i = 0; i < numbers->count; ++i) {
    const std::optional<std::uint32_t> name = element(*numbers, i);
    if (!name || !addName(*name, builder)) return nullptr;
  }
  return builder.finish();
}

bool Reader::addName(std::uint32_t number, NameListBuilder& builder) {
  const std::optional<ObjectView> object = _archive.object(number);
  const bool isPlain =
      object && object->type == ObjectType::ascii && isPlainName(BinaryObjects::chars(*object));
  std::optional<std::string> converted;
  if (!isPlain && !(converted = text(number))) return false;
  if (isPlain && !_budget.spend(object->count + 1)) {
    _problem = kTooLarge;
    return false;
  }
  const std::string_view name = isPlain ? BinaryObjects::chars(*object) : *converted;
  const bool isName = !name.empty() && name != "." && name != ".." &&
                      (isPlain || name.find_first_of(kNeverInNames) == std::string_view::npos);
  if (isName && builder.append(name)) return true;
  _problem = "a name of the cache is none that a file can have";
  return false;
}

/// The bytes of a string, or of data where they are not UTF-8.
std::optional<std::string> Reader::text(std::uint32_t number) {
  const std::optional<ObjectView> object = _archive.object(number);
  if (!object) return fail("an object of the cache is missing or damaged");
  if (object->type != ObjectType::dictionary) return textOf(*object);

  const std::string_view className = _archive.className(*object);
  const char* const field = plist::isStringClass(className) ? "NS.string"
                            : plist::isDataClass(className) ? "NS.data"
                                                            : nullptr;
  const std::optional<ObjectView> content =
      field ? _archive.resolvedField(*object, field) : std::nullopt;
  if (!content) return fail("the cache holds something else where text is due");
  return textOf(*content);
}

std::optional<std::string> Reader::textOf(const ObjectView& object) {
  if (!_budget.spend(object.count + 1)) return fail(kTooLarge);
  if (object.type == ObjectType::data) return std::string(BinaryObjects::chars(object));
  std::optional<std::string> text = BinaryObjects::text(object);
  if (!text) return fail("the cache holds something else where text is due");
  return text;
}

/// The number in a list; nothing in a cache is null.
std::optional<std::uint32_t> Reader::element(const ObjectView& numbers, std::uint64_t i) {
  const std::optional<std::uint32_t> number = _archive.number(numbers, i);
  if (!number || *number == ArchiveObjects::kNull) {
    return fail("a reference of the cache is damaged");
  }
  return number;
}

}  // namespace

Result<FolderCacheFile::Entries> FolderCacheFile::decode(std::span<const std::uint8_t> bytes) {
  const Result<ArchiveObjects> archive = ArchiveObjects::open(bytes);
  if (!archive) return archive.error();
  Reader reader(*archive, bytes.size());
  std::optional<Entries> entries = reader.entries();
  if (!entries) return Error{reader.problem()};
  return std::move(*entries);
}

}  // namespace pelmora::cache
