#include "platform/ArchiveObjects.h"

namespace pelmora::plist {

namespace {

constexpr std::int64_t kVersion = 100000;

/// No object has nearly as many fields. Each look for one goes through them all, and a million
/// references may lead to the same object.
constexpr std::uint64_t kMostFields = 64;

bool isText(const ObjectView& object, std::string_view text) {
  return object.type == ObjectType::ascii && BinaryObjects::chars(object) == text;
}

bool isClass(std::string_view name, std::string_view plain, std::string_view mutableOne) {
  return name == plain || name == mutableOne;
}

}  // namespace

bool isDictionaryClass(std::string_view name) {
  return isClass(name, "NSDictionary", "NSMutableDictionary");
}
bool isArrayClass(std::string_view name) { return isClass(name, "NSArray", "NSMutableArray"); }
bool isStringClass(std::string_view name) { return isClass(name, "NSString", "NSMutableString"); }
bool isDataClass(std::string_view name) { return isClass(name, "NSData", "NSMutableData"); }

Result<ArchiveObjects> ArchiveObjects::open(std::span<const std::uint8_t> bytes) {
  const Result<BinaryObjects> objects = BinaryObjects::open(bytes);
  if (!objects) return objects.error();

  ArchiveObjects archive(*objects);
  const std::optional<ObjectView> top = objects->at(objects->top());
  if (!top || !archive.isArchive(*top)) return Error{"the property list is no keyed archive"};

  const std::optional<ObjectView> list = archive.field(*top, "$objects");
  if (!list || list->type != ObjectType::array) return Error{"the archive has no objects"};
  archive._list = *list;

  const std::optional<ObjectView> roots = archive.field(*top, "$top");
  const std::optional<ObjectView> root = roots ? archive.field(*roots, "root") : std::nullopt;
  const std::optional<std::uint32_t> number = root ? BinaryObjects::uid(*root) : std::nullopt;
  if (!number || *number >= list->count) return Error{"the archive has no root"};
  archive._root = *number;
  return archive;
}

bool ArchiveObjects::isArchive(const ObjectView& top) const {
  const std::optional<ObjectView> archiver = field(top, "$archiver");
  const std::optional<ObjectView> version = field(top, "$version");
  return archiver && isText(*archiver, "NSKeyedArchiver") && version &&
         BinaryObjects::integer(*version) == kVersion;
}

std::optional<ObjectView> ArchiveObjects::object(std::uint32_t number) const {
  if (number >= _list.count) return std::nullopt;
  return _objects.at(_objects.ref(_list, number));
}

std::optional<ObjectView> ArchiveObjects::field(const ObjectView& object,
                                                std::string_view name) const {
  if (object.type != ObjectType::dictionary || object.count > kMostFields) return std::nullopt;
  for (std::uint64_t i = 0; i < object.count; ++i) {
    const std::optional<ObjectView> key = _objects.at(_objects.ref(object, i));
    if (!key) return std::nullopt;
    if (isText(*key, name)) return _objects.at(_objects.ref(object, object.count + i));
  }
  return std::nullopt;
}

std::optional<ObjectView> ArchiveObjects::resolvedField(const ObjectView& object,
                                                        std::string_view name) const {
  const std::optional<ObjectView> found = field(object, name);
  if (!found || found->type != ObjectType::uid) return found;
  const std::optional<std::uint32_t> number = BinaryObjects::uid(*found);
  return number ? this->object(*number) : std::nullopt;
}

std::optional<ObjectView> ArchiveObjects::numbers(const ObjectView& object,
                                                  std::string_view name) const {
  const std::optional<ObjectView> found = field(object, name);
  return found && found->type == ObjectType::array ? found : std::nullopt;
}

std::optional<std::uint32_t> ArchiveObjects::number(const ObjectView& numbers,
                                                    std::uint64_t i) const {
  const std::optional<ObjectView> element = _objects.at(_objects.ref(numbers, i));
  return element ? BinaryObjects::uid(*element) : std::nullopt;
}

std::string_view ArchiveObjects::className(const ObjectView& object) const {
  const std::optional<ObjectView> classEntry = resolvedField(object, "$class");
  const std::optional<ObjectView> name =
      classEntry ? field(*classEntry, "$classname") : std::nullopt;
  return name && name->type == ObjectType::ascii ? BinaryObjects::chars(*name) : std::string_view();
}

}  // namespace pelmora::plist
