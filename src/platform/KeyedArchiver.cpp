#include "platform/KeyedArchive.h"

#include <initializer_list>
#include <unordered_map>
#include <utility>

namespace pelmora::plist {

namespace {

class Archiver {
 public:
  Archiver() { _objects.emplace_back("$null"); }

  Uid add(const Value& value);
  [[nodiscard]] Dictionary archive(Uid root) && {
    return {{"$archiver", "NSKeyedArchiver"},
            {"$objects", std::move(_objects)},
            {"$top", Dictionary{{"root", root}}},
            {"$version", 100000}};
  }

 private:
  using Classes = std::initializer_list<const char*>;

  Uid append(Value object) {
    _objects.push_back(std::move(object));
    return Uid{static_cast<std::uint32_t>(_objects.size() - 1)};
  }
  Uid text(const std::string& text);
  Uid classEntry(Classes classes);
  Uid array(const Array& array);
  Uid dictionary(const Dictionary& dictionary);

  Array _objects;
  std::unordered_map<std::string, Uid> _texts;
  std::unordered_map<std::string, Uid> _classes;
};

Uid Archiver::add(const Value& value) {
  if (value.isNull() || value.get<Uid>()) return Uid{0};
  if (const auto* string = value.get<std::string>()) return text(*string);
  if (const auto* elements = value.get<Array>()) return array(*elements);
  if (const auto* pairs = value.get<Dictionary>()) return dictionary(*pairs);
  if (const auto* date = value.get<ReferenceTime>()) {
    const Uid dateClass = classEntry({"NSDate", "NSObject"});
    return append(Dictionary{{"$class", dateClass}, {"NS.time", date->seconds}});
  }
  return append(value);
}

Uid Archiver::text(const std::string& text) {
  const auto known = _texts.find(text);
  if (known != _texts.end()) return known->second;
  return _texts.emplace(text, append(text)).first->second;
}

Uid Archiver::classEntry(Classes classes) {
  const std::string name = *classes.begin();
  const auto known = _classes.find(name);
  if (known != _classes.end()) return known->second;
  const Uid entry =
      append(Dictionary{{"$classes", Array(classes.begin(), classes.end())}, {"$classname", name}});
  return _classes.emplace(name, entry).first->second;
}

// A container takes its number before its contents do, so that the root is the first object.
Uid Archiver::array(const Array& array) {
  const Uid number = append(Value());
  Array elements;
  for (const Value& element : array) elements.emplace_back(add(element));
  const Uid arrayClass = classEntry({"NSArray", "NSObject"});
  _objects[number.index] = Dictionary{{"$class", arrayClass}, {"NS.objects", std::move(elements)}};
  return number;
}

Uid Archiver::dictionary(const Dictionary& dictionary) {
  const Uid number = append(Value());
  Array keys;
  Array values;
  for (const auto& [key, value] : dictionary) keys.emplace_back(text(key));
  for (const auto& [key, value] : dictionary) values.emplace_back(add(value));
  const Uid dictionaryClass = classEntry({"NSMutableDictionary", "NSDictionary", "NSObject"});
  _objects[number.index] = Dictionary{
      {"$class", dictionaryClass}, {"NS.keys", std::move(keys)}, {"NS.objects", std::move(values)}};
  return number;
}

}  // namespace

Bytes archive(const Value& root) {
  Archiver archiver;
  const Uid number = archiver.add(root);
  return writeBinary(std::move(archiver).archive(number));
}

}  // namespace pelmora::plist
