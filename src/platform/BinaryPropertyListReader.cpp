#include "platform/BinaryPropertyList.h"

#include <cmath>
#include <utility>
#include <vector>

namespace pelmora::plist {

namespace {

class Reader {
 public:
  Reader(const BinaryObjects& objects, std::size_t inputSize)
      : _objects(objects), _budget(inputSize), _open(objects.size(), false) {}

  std::optional<Value> value(std::uint64_t index, int depth);
  [[nodiscard]] const char* problem() const { return _problem; }

 private:
  std::optional<Value> container(const ObjectView& object, int depth);
  std::optional<Value> array(const ObjectView& object, int depth);
  std::optional<Value> dictionary(const ObjectView& object, int depth);
  std::nullopt_t fail(const char* problem) {
    _problem = problem;
    return std::nullopt;
  }

  const BinaryObjects& _objects;
  ReadingBudget _budget;
  std::vector<bool> _open;  // the containers that hold the one being read
  const char* _problem = "";
};

std::optional<Value> Reader::value(std::uint64_t index, int depth) {
  const std::optional<ObjectView> object = _objects.at(index);
  if (!object) return fail("an object of the property list is damaged");
  if (!_budget.spend(ReadingBudget::kValueCost)) return fail("the property list is too large");

  if (object->type == ObjectType::array || object->type == ObjectType::dictionary) {
    if (depth >= ReadingBudget::kMaxDepth) return fail("the property list is too deep");
    if (_open[index]) return fail("the property list contains itself");
    _open[index] = true;
    std::optional<Value> read = container(*object, depth);
    _open[index] = false;
    return read;
  }
  if (!_budget.spend(object->count)) return fail("the property list is too large");
  std::optional<Value> scalar = scalarValue(*object);
  if (!scalar) return fail("a value of the property list is damaged");
  return scalar;
}

std::optional<Value> Reader::container(const ObjectView& object, int depth) {
  return object.type == ObjectType::array ? array(object, depth + 1)
                                          : dictionary(object, depth + 1);
}

std::optional<Value> Reader::array(const ObjectView& object, int depth) {
  Array elements;
  for (std::uint64_t i = 0; i < object.count; ++i) {
    std::optional<Value> element = value(_objects.ref(object, i), depth);
    if (!element) return std::nullopt;
    elements.push_back(std::move(*element));
  }
  return elements;
}

std::optional<Value> Reader::dictionary(const ObjectView& object, int depth) {
  Dictionary pairs;
  for (std::uint64_t i = 0; i < object.count; ++i) {
    std::optional<Value> key = value(_objects.ref(object, i), depth);
    if (!key) return std::nullopt;
    auto* name = key->get<std::string>();
    if (!name) return fail("a key of the property list is no string");
    std::optional<Value> content = value(_objects.ref(object, object.count + i), depth);
    if (!content) return std::nullopt;
    if (!pairs.emplace(std::move(*name), std::move(*content)).second) {
      return fail("a key of the property list appears twice");
    }
  }
  return pairs;
}

}  // namespace

std::optional<Value> scalarValue(const ObjectView& object) {
  switch (object.type) {
    case ObjectType::null:
      return Value();
    case ObjectType::boolean:
      return Value(object.count != 0);
    case ObjectType::integer:
      if (const auto number = BinaryObjects::integer(object)) return Value(*number);
      return std::nullopt;
    case ObjectType::real:
      return Value(*BinaryObjects::real(object));
    case ObjectType::date: {
      const double seconds = *BinaryObjects::real(object);
      if (!std::isfinite(seconds)) return std::nullopt;
      return Value(ReferenceTime{seconds});
    }
    case ObjectType::data:
      return Value(Bytes(object.payload, object.payload + object.count));
    case ObjectType::ascii:
    case ObjectType::utf16:
      if (auto text = BinaryObjects::text(object)) return Value(std::move(*text));
      return std::nullopt;
    case ObjectType::uid:
      if (const auto index = BinaryObjects::uid(object)) return Value(Uid{*index});
      return std::nullopt;
    case ObjectType::array:
    case ObjectType::dictionary:
      break;
  }
  return std::nullopt;
}

Result<Value> readBinary(std::span<const std::uint8_t> bytes) {
  const Result<BinaryObjects> objects = BinaryObjects::open(bytes);
  if (!objects) return objects.error();
  Reader reader(*objects, bytes.size());
  std::optional<Value> root = reader.value(objects->top(), 0);
  if (!root) return Error{reader.problem()};
  return std::move(*root);
}

}  // namespace pelmora::plist
