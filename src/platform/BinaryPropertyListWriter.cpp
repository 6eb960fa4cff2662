#include "platform/BinaryObjectWriter.h"
#include "platform/PropertyList.h"

#include <bit>
#include <unordered_map>
#include <utility>

namespace pelmora::plist {

namespace {

std::string bytesOf(char type, std::uint64_t number) {
  std::string bytes(1, type);
  for (int shift = 0; shift < 64; shift += 8) bytes += static_cast<char>((number >> shift) & 0xFF);
  return bytes;
}

/// Equal for equal scalars and for nothing else; empty for containers, which are not shared.
struct Identity {
  std::string operator()(std::monostate) const { return "n"; }
  std::string operator()(bool value) const { return value ? "b1" : "b0"; }
  std::string operator()(std::int64_t value) const {
    return bytesOf('i', static_cast<std::uint64_t>(value));
  }
  std::string operator()(double value) const {
    return bytesOf('r', std::bit_cast<std::uint64_t>(value));
  }
  std::string operator()(ReferenceTime value) const {
    return bytesOf('t', std::bit_cast<std::uint64_t>(value.seconds));
  }
  std::string operator()(const std::string& value) const { return 's' + value; }
  std::string operator()(const Bytes& value) const {
    return 'd' + std::string(value.begin(), value.end());
  }
  std::string operator()(Uid value) const { return bytesOf('u', value.index); }
  std::string operator()(const Array&) const { return {}; }
  std::string operator()(const Dictionary&) const { return {}; }
};

/// The objects of a value, each with the numbers of those it refers to: the first pass, after which
/// the width of a reference is known.
class ObjectList {
 public:
  struct Object {
    const Value* value = nullptr;  // null for a key
    const std::string* key = nullptr;
    std::vector<std::uint64_t> refs;
  };

  explicit ObjectList(const Value& root) { add(root); }
  [[nodiscard]] const std::vector<Object>& objects() const { return _objects; }

 private:
  std::uint64_t add(const Value& value) {
    const std::string identity = std::visit(Identity(), value.storage());
    if (!identity.empty()) return addOnce(identity, {&value, nullptr, {}});
    const std::uint64_t index = _objects.size();
    _objects.push_back({&value, nullptr, {}});
    std::vector<std::uint64_t> refs;
    if (const auto* array = value.get<Array>()) {
      for (const Value& element : *array) refs.push_back(add(element));
    } else if (const auto* dictionary = value.get<Dictionary>()) {
      for (const auto& [key, content] : *dictionary) {
        refs.push_back(addOnce('s' + key, {nullptr, &key, {}}));
      }
      for (const auto& [key, content] : *dictionary) refs.push_back(add(content));
    }
    _objects[index].refs = std::move(refs);
    return index;
  }

  std::uint64_t addOnce(const std::string& identity, Object object) {
    const auto [at, isNew] = _known.try_emplace(identity, _objects.size());
    if (isNew) _objects.push_back(std::move(object));
    return at->second;
  }

  std::vector<Object> _objects;
  std::unordered_map<std::string, std::uint64_t> _known;
};

/// Puts one object into the file.
struct Put {
  BinaryObjectWriter& writer;
  const std::vector<std::uint64_t>& refs;

  void operator()(std::monostate) const { writer.null(); }
  void operator()(bool value) const { writer.boolean(value); }
  void operator()(std::int64_t value) const { writer.integer(value); }
  void operator()(double value) const { writer.real(value); }
  void operator()(ReferenceTime value) const { writer.date(value); }
  void operator()(const std::string& value) const { writer.text(value); }
  void operator()(const Bytes& value) const { writer.data(value); }
  void operator()(Uid value) const { writer.uid(value.index); }
  void operator()(const Array& value) const {
    writer.array(value.size());
    putRefs();
  }
  void operator()(const Dictionary& value) const {
    writer.dictionary(value.size());
    putRefs();
  }

 private:
  void putRefs() const {
    for (const std::uint64_t ref : refs) writer.ref(ref);
  }
};

}  // namespace

Bytes writeBinary(const Value& root) {
  const ObjectList list(root);
  BinaryObjectWriter writer(list.objects().size());
  for (const ObjectList::Object& object : list.objects()) {
    if (object.key) {
      writer.text(*object.key);
    } else {
      std::visit(Put{writer, object.refs}, object.value->storage());
    }
  }
  return std::move(writer).finish();
}

}  // namespace pelmora::plist
