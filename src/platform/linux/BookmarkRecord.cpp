#include "platform/linux/BookmarkRecord.h"

#include <climits>
#include <string_view>

namespace pelmora::platform {

namespace {

constexpr std::size_t kMaxAncestors = PATH_MAX / 2;

/// Reads the keys of one dictionary and remembers whether one was of a wrong type.
class KeyReader {
 public:
  explicit KeyReader(const plist::Dictionary& dictionary) : _dictionary(dictionary) {}

  [[nodiscard]] const std::string& wrongKey() const { return _wrongKey; }

  std::string bytes(std::string_view key) {
    const plist::Value* const value = find(key);
    return value ? checked(key, bytesOf(*value)).value_or("") : "";
  }

  FilePath path(std::string_view key) {
    std::string text = bytes(key);
    const bool sound = text.empty() || (text.front() == '/' && text.size() < PATH_MAX &&
                                        text.find('\0') == std::string::npos);
    if (!sound) _wrongKey = key;
    return sound ? FilePath(std::move(text)) : FilePath();
  }

  std::optional<std::int64_t> integer(std::string_view key) {
    const plist::Value* const value = find(key);
    return value ? checked(key, integerOf(*value)) : std::nullopt;
  }

  std::vector<std::uint64_t> inodes(std::string_view key) {
    std::vector<std::uint64_t> inodes;
    for (const plist::Value& value : array(key, kMaxAncestors)) {
      inodes.push_back(static_cast<std::uint64_t>(checked(key, integerOf(value)).value_or(0)));
    }
    return inodes;
  }

  std::vector<std::string> names(std::string_view key) {
    std::vector<std::string> names;
    for (const plist::Value& value : array(key, BookmarkRecord::kChildNames)) {
      std::string name = checked(key, bytesOf(value)).value_or("");
      if (name.empty() || name.find_first_of(std::string_view("/\0", 2)) != std::string::npos) {
        _wrongKey = key;
      }
      names.push_back(std::move(name));
    }
    return names;
  }

 private:
  static std::optional<std::string> bytesOf(const plist::Value& value) {
    if (const auto* text = value.get<std::string>()) return *text;
    const auto* bytes = value.get<plist::Bytes>();
    return bytes ? std::optional(std::string(bytes->begin(), bytes->end())) : std::nullopt;
  }

  static std::optional<std::int64_t> integerOf(const plist::Value& value) {
    const auto* number = value.get<std::int64_t>();
    return number ? std::optional(*number) : std::nullopt;
  }

  const plist::Value* find(std::string_view key) const {
    const auto found = _dictionary.find(key);
    return found == _dictionary.end() ? nullptr : &found->second;
  }

  plist::Array array(std::string_view key, std::size_t limit) {
    const plist::Value* const value = find(key);
    if (!value) return {};
    const auto* values = value->get<plist::Array>();
    if (values && values->size() <= limit) return *values;
    _wrongKey = key;
    return {};
  }

  template <typename T>
  std::optional<T> checked(std::string_view key, std::optional<T> value) {
    if (!value) _wrongKey = key;
    return value;
  }

  const plist::Dictionary& _dictionary;
  std::string _wrongKey;
};

}  // namespace

plist::Bytes BookmarkRecord::encoded() const {
  plist::Dictionary keys{{"path", path.bytes()}};
  if (!pathInFilesystem.empty()) keys["filesystemPath"] = pathInFilesystem.bytes();
  if (!filesystem.name.empty()) keys["filesystemName"] = filesystem.name;
  if (filesystem.id != 0) keys["filesystemID"] = filesystem.id;
  if (inode) keys["inode"] = static_cast<std::int64_t>(*inode);
  if (birthTime) keys["birthTime"] = *birthTime;
  plist::Array ancestors;
  for (const std::uint64_t ancestor : ancestorInodes) {
    ancestors.emplace_back(static_cast<std::int64_t>(ancestor));
  }
  if (!ancestors.empty()) keys["ancestorInodes"] = std::move(ancestors);
  plist::Array names(childNames.begin(), childNames.end());
  if (!names.empty()) keys["childNames"] = std::move(names);
  return plist::writeBinary(keys);
}

Result<BookmarkRecord> BookmarkRecord::decode(const plist::Bytes& bytes) {
  if (bytes.size() > kMaxBytes) return Error{"the bookmark is too large"};
  const Result<plist::Value> root = plist::read(bytes);
  if (!root) return Error{"the bookmark cannot be read: " + root.error().message};
  const auto* dictionary = root->get<plist::Dictionary>();
  if (!dictionary) return Error{"the bookmark is no dictionary"};

  KeyReader keys(*dictionary);
  BookmarkRecord record;
  record.path = keys.path("path");
  record.pathInFilesystem = keys.path("filesystemPath");
  record.filesystem.name = keys.bytes("filesystemName");
  record.filesystem.id = keys.integer("filesystemID").value_or(0);
  if (const auto inode = keys.integer("inode")) record.inode = static_cast<std::uint64_t>(*inode);
  record.birthTime = keys.integer("birthTime");
  record.ancestorInodes = keys.inodes("ancestorInodes");
  record.childNames = keys.names("childNames");
  if (!keys.wrongKey().empty()) return Error{"the bookmark's " + keys.wrongKey() + " is damaged"};
  if (record.path.empty()) return Error{"the bookmark has no path"};
  return record;
}

}  // namespace pelmora::platform
