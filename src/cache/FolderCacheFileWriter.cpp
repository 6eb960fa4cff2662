#include "cache/FolderCacheFile.h"
#include "cache/TextTable.h"
#include "platform/BinaryObjectWriter.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <utility>
#include <vector>

namespace pelmora::cache {

namespace {

/// The objects before the numbered ones, in the order in which `Writer::putFrame` writes them. The
/// references to them are these numbers.
enum Frame : std::uint64_t {
  top,
  archiverKey,
  objectsKey,
  topKey,
  versionKey,
  archiver,
  version,
  topDictionary,
  rootKey,
  objectList,
  keysKey,
  valuesKey,
  timeKey,
  classKey,
  classNameKey,
  classesKey,
  objectName,
  dictionaryName,
  mutableDictionaryName,
  arrayName,
  dateName,
  dictionaryClasses,
  arrayClasses,
  dateClasses,
  frameEnd
};

/// The archive's own numbers, its UIDs, of the objects that every cache has; those of the paths
/// follow, of the different names, and of the folders.
enum Number : std::uint64_t {
  nullObject,
  rootObject,
  dictionaryClass,
  arrayClass,
  dateClass,
  mdateText,
  namesText,
  folderNamesText,
  firstPath
};

/// The lists before those of the folders.
enum SharedList : std::uint64_t {
  rootKeys,
  rootValues,
  entryKeys,
  entryKeysWithFolders,
  sharedLists
};

/// Writes the archive front to back. What a name refers to must be known before, so the numbers are
/// given out arithmetically, each kind of object in one run: the frame, the numbered objects
/// (texts, then an entry, its date and its one or two arrays per folder), the UID of each, and the
/// lists of UIDs.
class Writer {
 public:
  explicit Writer(const FolderCacheFile::Entries& entries);
  [[nodiscard]] plist::Bytes write() const;

 private:
  struct Folder {
    const FilePath* path;
    const FolderCacheFile::Entry* entry;
  };

  [[nodiscard]] static std::uint64_t numbersOf(const Folder& folder) {
    return folder.entry->folderNames ? 4 : 3;
  }
  [[nodiscard]] std::uint64_t object(std::uint64_t number) const { return frameEnd + number; }
  [[nodiscard]] std::uint64_t uid(std::uint64_t number) const {
    return frameEnd + _numbers + number - 1;  // the null object is never referred to
  }
  [[nodiscard]] std::uint64_t lists() const { return uid(_numbers); }
  [[nodiscard]] std::uint64_t firstName() const { return firstPath + _folders.size(); }
  [[nodiscard]] std::uint64_t firstFolder() const { return firstName() + _names.texts().size(); }
  /// Each object of a folder has one list or number of its own, in the same order.
  [[nodiscard]] std::uint64_t listOf(std::uint64_t number) const {
    return lists() + sharedLists + number - firstFolder();
  }

  void numberNames(const SharedNames& names);
  [[nodiscard]] std::size_t expectedSize() const;
  void putFrame(plist::BinaryObjectWriter& out) const;
  void putClassNames(plist::BinaryObjectWriter& out) const;
  void putNumbered(plist::BinaryObjectWriter& out) const;
  void putDictionary(plist::BinaryObjectWriter& out, std::uint64_t keys,
                     std::uint64_t values) const;
  void putFolderObjects(plist::BinaryObjectWriter& out) const;
  void putLists(plist::BinaryObjectWriter& out) const;
  void putRootLists(plist::BinaryObjectWriter& out) const;
  void putUidsOfNames(plist::BinaryObjectWriter& out, std::size_t from, std::size_t count) const;

  std::vector<Folder> _folders;  // by path
  TextTable _names;
  std::vector<std::uint32_t> _used;  // for every name of every folder, its number in `_names`
  std::uint64_t _numbers = 0;        // of objects that have a UID
};

std::size_t sizeOf(const SharedNames& names) { return names ? names->size() : 0; }

std::size_t nameCount(const FolderCacheFile::Entries& entries) {
  std::size_t count = 0;
  for (const auto& [path, entry] : entries) {
    count += sizeOf(entry.names) + sizeOf(entry.folderNames);
  }
  return count;
}

void putRefs(plist::BinaryObjectWriter& out, std::initializer_list<std::uint64_t> objects) {
  for (const std::uint64_t object : objects) out.ref(object);
}

Writer::Writer(const FolderCacheFile::Entries& entries) {
  _folders.reserve(entries.size());
  for (const auto& [path, entry] : entries) _folders.push_back({&path, &entry});
  std::sort(_folders.begin(), _folders.end(),
            [](const Folder& a, const Folder& b) { return *a.path < *b.path; });

  _used.reserve(nameCount(entries));
  for (const Folder& folder : _folders) {
    numberNames(folder.entry->names);
    numberNames(folder.entry->folderNames);
  }
  _names.freeze();

  _numbers = firstFolder();
  for (const Folder& folder : _folders) _numbers += numbersOf(folder);
}

void Writer::numberNames(const SharedNames& names) {
  if (!names) return;
  std::vector<std::string_view> texts(names->begin(), names->end());
  _names.add(texts, _used);
}

plist::Bytes Writer::write() const {
  std::uint64_t objects = lists() + sharedLists;
  for (const Folder& folder : _folders) objects += numbersOf(folder);
  plist::BinaryObjectWriter out(objects, expectedSize());
  putFrame(out);
  putNumbered(out);
  for (std::uint64_t number = rootObject; number < _numbers; ++number) {
    out.uid(static_cast<std::uint32_t>(number));
  }
  putLists(out);
  return std::move(out).finish();
}

/// Not below what the file takes but for names in other scripts, so that it is not copied as it
/// grows.
std::size_t Writer::expectedSize() const {
  constexpr std::size_t kPerReference = 4;
  constexpr std::size_t kPerNumber = 2 * 4 + kPerReference + 5;  // two offsets, a reference, a UID
  constexpr std::size_t kPerFolder = 5 * kPerNumber + 128;
  constexpr std::size_t kFrameSize = 1024;
  std::size_t size = kFrameSize + kPerFolder * _folders.size() + kPerReference * _used.size();
  for (const Folder& folder : _folders) size += folder.path->bytes().size();
  for (const std::string_view name : _names.texts()) size += name.size() + 3 + kPerNumber;
  return size;
}

void Writer::putFrame(plist::BinaryObjectWriter& out) const {
  out.dictionary(4);
  putRefs(out, {archiverKey, objectsKey, topKey, versionKey});
  putRefs(out, {archiver, objectList, topDictionary, version});
  for (const char* const key : {"$archiver", "$objects", "$top", "$version", "NSKeyedArchiver"}) {
    out.text(key);
  }
  out.integer(100000);
  out.dictionary(1);
  putRefs(out, {rootKey, uid(rootObject)});
  out.text("root");
  out.array(_numbers);
  for (std::uint64_t number = nullObject; number < _numbers; ++number) out.ref(object(number));
  for (const char* const key : {"NS.keys", "NS.objects", "NS.time", "$class"}) out.text(key);
  putClassNames(out);
}

void Writer::putClassNames(plist::BinaryObjectWriter& out) const {
  for (const char* const name : {"$classname", "$classes", "NSObject", "NSDictionary",
                                 "NSMutableDictionary", "NSArray", "NSDate"}) {
    out.text(name);
  }
  out.array(3);
  putRefs(out, {mutableDictionaryName, dictionaryName, objectName});
  out.array(2);
  putRefs(out, {arrayName, objectName});
  out.array(2);
  putRefs(out, {dateName, objectName});
}

void Writer::putNumbered(plist::BinaryObjectWriter& out) const {
  const auto putClass = [&out](std::uint64_t name, std::uint64_t classes) {
    out.dictionary(2);
    putRefs(out, {classNameKey, classesKey, name, classes});
  };
  out.text("$null");
  putDictionary(out, lists() + rootKeys, lists() + rootValues);
  putClass(mutableDictionaryName, dictionaryClasses);
  putClass(arrayName, arrayClasses);
  putClass(dateName, dateClasses);
  for (const char* const key : {"mdate", "names", "folderNames"}) out.text(key);
  for (const Folder& folder : _folders) out.text(folder.path->bytes());
  for (const std::string_view name : _names.texts()) out.text(name);
  putFolderObjects(out);
}

void Writer::putDictionary(plist::BinaryObjectWriter& out, std::uint64_t keys,
                           std::uint64_t values) const {
  out.dictionary(3);
  putRefs(out, {classKey, keysKey, valuesKey, uid(dictionaryClass), keys, values});
}

void Writer::putFolderObjects(plist::BinaryObjectWriter& out) const {
  std::uint64_t number = firstFolder();
  for (const Folder& folder : _folders) {
    const bool knowsFolders = folder.entry->folderNames != nullptr;
    const std::uint64_t keys = knowsFolders ? entryKeysWithFolders : entryKeys;
    putDictionary(out, lists() + keys, listOf(number));
    out.dictionary(2);
    putRefs(out, {classKey, timeKey, uid(dateClass), listOf(number + 1)});
    out.dictionary(2);
    putRefs(out, {classKey, valuesKey, uid(arrayClass), listOf(number + 2)});
    if (knowsFolders) {
      out.dictionary(2);
      putRefs(out, {classKey, valuesKey, uid(arrayClass), listOf(number + 3)});
    }
    number += numbersOf(folder);
  }
}

void Writer::putLists(plist::BinaryObjectWriter& out) const {
  putRootLists(out);
  out.array(2);
  putRefs(out, {uid(mdateText), uid(namesText)});
  out.array(3);
  putRefs(out, {uid(mdateText), uid(namesText), uid(folderNamesText)});

  std::uint64_t number = firstFolder();
  std::size_t used = 0;
  for (const Folder& folder : _folders) {
    const std::uint64_t numbers = numbersOf(folder);
    out.array(numbers - 1);
    for (std::uint64_t i = 1; i < numbers; ++i) out.ref(uid(number + i));
    out.real(folder.entry->mdate.seconds);
    putUidsOfNames(out, used, sizeOf(folder.entry->names));
    used += sizeOf(folder.entry->names);
    if (folder.entry->folderNames) {
      putUidsOfNames(out, used, folder.entry->folderNames->size());
      used += folder.entry->folderNames->size();
    }
    number += numbers;
  }
}

void Writer::putRootLists(plist::BinaryObjectWriter& out) const {
  out.array(_folders.size());
  for (std::uint64_t i = 0; i < _folders.size(); ++i) out.ref(uid(firstPath + i));
  out.array(_folders.size());
  std::uint64_t number = firstFolder();
  for (const Folder& folder : _folders) {
    out.ref(uid(number));
    number += numbersOf(folder);
  }
}

void Writer::putUidsOfNames(plist::BinaryObjectWriter& out, std::size_t from,
                            std::size_t count) const {
  out.array(count);
  const std::uint64_t first = uid(firstName());
  for (std::size_t i = from; i < from + count; ++i) out.ref(first + _used[i]);
}

}  // namespace

Result<plist::Bytes> FolderCacheFile::encode(const Entries& entries) {
  for (const auto& [path, entry] : entries) {
    if (!path.bytes().starts_with('/')) return Error{path.bytes() + " is no path"};
    if (!std::isfinite(entry.mdate.seconds)) return Error{path.bytes() + " has no date"};
  }
  // Five numbers a folder and one a name: UIDs have 32 bits.
  if (nameCount(entries) + 5 * entries.size() >= std::numeric_limits<std::uint32_t>::max() / 2) {
    return Error{"the cache is too large"};
  }
  return Writer(entries).write();
}

}  // namespace pelmora::cache
