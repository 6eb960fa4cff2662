#include "platform/ArchiveObjects.h"
#include "platform/BinaryPropertyList.h"
#include "platform/KeyedArchive.h"
#include "platform/ReadingBudget.h"

#include <cmath>
#include <utility>
#include <vector>

namespace pelmora::plist {

namespace {

class Unarchiver {
 public:
  Unarchiver(const ArchiveObjects& objects, std::size_t inputSize)
      : _objects(objects), _budget(inputSize), _open(objects.size(), false) {}

  std::optional<Value> value(std::uint32_t number, int depth);
  [[nodiscard]] const char* problem() const { return _problem; }

 private:
  std::optional<Value> scalar(const ObjectView& object);
  std::optional<Value> instance(const ObjectView& object, int depth);
  std::optional<Value> wrapped(const ObjectView& object, std::string_view field);
  template <typename T>
  std::optional<Value> wrappedAs(const ObjectView& object, std::string_view field);
  std::optional<Value> date(const ObjectView& object);
  std::optional<Value> array(const ObjectView& object, int depth);
  std::optional<Value> dictionary(const ObjectView& object, int depth);
  std::optional<Value> number(const ObjectView& object);
  std::optional<Value> element(const ObjectView& numbers, std::uint64_t i, int depth);
  std::nullopt_t fail(const char* problem) {
    _problem = problem;
    return std::nullopt;
  }

  const ArchiveObjects& _objects;
  ReadingBudget _budget;
  std::vector<bool> _open;  // the objects that hold the one being read
  const char* _problem = "";
};

std::optional<Value> Unarchiver::value(std::uint32_t number, int depth) {
  const std::optional<ObjectView> object = _objects.object(number);
  if (!object) return fail("an object of the archive is missing or damaged");
  if (!_budget.spend(ReadingBudget::kValueCost)) return fail("the archive is too large");
  if (number == ArchiveObjects::kNull) return Value();
  if (object->type != ObjectType::dictionary) return scalar(*object);

  if (depth >= ReadingBudget::kMaxDepth) return fail("the archive is too deep");
  if (_open[number]) return fail("the archive contains itself");
  _open[number] = true;
  std::optional<Value> read = instance(*object, depth + 1);
  _open[number] = false;
  return read;
}

std::optional<Value> Unarchiver::scalar(const ObjectView& object) {
  if (!_budget.spend(object.count)) return fail("the archive is too large");
  std::optional<Value> read = object.type == ObjectType::uid ? std::nullopt : scalarValue(object);
  if (!read) return fail("a value of the archive is damaged");
  return read;
}

std::optional<Value> Unarchiver::instance(const ObjectView& object, int depth) {
  const std::string_view name = _objects.className(object);
  if (isDictionaryClass(name)) return dictionary(object, depth);
  if (isArrayClass(name)) return array(object, depth);
  if (isStringClass(name)) return wrappedAs<std::string>(object, "NS.string");
  if (isDataClass(name)) return wrappedAs<Bytes>(object, "NS.data");
  if (name == "NSNumber") return number(object);
  if (name == "NSDate") return date(object);
  return fail("the archive holds an object of a class that is not allowed");
}

/// The plain value in the field of that name.
std::optional<Value> Unarchiver::wrapped(const ObjectView& object, std::string_view field) {
  const std::optional<ObjectView> content = _objects.resolvedField(object, field);
  if (!content) return fail("an object of the archive lacks its value");
  return scalar(*content);
}

/// The same, which must be a T.
template <typename T>
std::optional<Value> Unarchiver::wrappedAs(const ObjectView& object, std::string_view field) {
  std::optional<Value> read = wrapped(object, field);
  if (read && !read->get<T>()) return fail("an object of the archive has a value of another type");
  return read;
}

std::optional<Value> Unarchiver::date(const ObjectView& object) {
  const std::optional<Value> time = wrapped(object, "NS.time");
  if (!time) return std::nullopt;
  const bool isNumber = time->get<double>() || time->get<std::int64_t>();
  if (!isNumber || !std::isfinite(time->doubleValue())) {
    return fail("a date of the archive is none");
  }
  return Value(ReferenceTime{time->doubleValue()});
}

std::optional<Value> Unarchiver::number(const ObjectView& object) {
  for (const char* const field : {"NS.intval", "NS.dblval", "NS.boolval"}) {
    if (const auto content = _objects.resolvedField(object, field)) return scalar(*content);
  }
  return fail("a number of the archive lacks its value");
}

std::optional<Value> Unarchiver::element(const ObjectView& numbers, std::uint64_t i, int depth) {
  const std::optional<std::uint32_t> number = _objects.number(numbers, i);
  if (!number) return fail("a reference of the archive is damaged");
  return value(*number, depth);
}

std::optional<Value> Unarchiver::array(const ObjectView& object, int depth) {
  const std::optional<ObjectView> numbers = _objects.numbers(object, "NS.objects");
  if (!numbers) return fail("an array of the archive lacks its elements");
  Array elements;
  for (std::uint64_t i = 0; i < numbers->count; ++i) {
    std::optional<Value> read = element(*numbers, i, depth);
    if (!read) return std::nullopt;
    elements.push_back(std::move(*read));
  }
  return elements;
}

std::optional<Value> Unarchiver::dictionary(const ObjectView& object, int depth) {
  const std::optional<ObjectView> keys = _objects.numbers(object, "NS.keys");
  const std::optional<ObjectView> values = _objects.numbers(object, "NS.objects");
  if (!keys || !values || keys->count != values->count) {
    return fail("a dictionary of the archive lacks its keys or values");
  }
  Dictionary pairs;
  for (std::uint64_t i = 0; i < keys->count; ++i) {
    std::optional<Value> key = element(*keys, i, depth);
    if (!key) return std::nullopt;
    // A key that is not UTF-8, as a path may be, was archived as its bytes.
    if (const auto* bytes = key->get<Bytes>()) key = std::string(bytes->begin(), bytes->end());
    auto* name = key->get<std::string>();
    if (!name) return fail("a key of the archive is no string");
    std::optional<Value> read = element(*values, i, depth);
    if (!read) return std::nullopt;
    if (!pairs.emplace(std::move(*name), std::move(*read)).second) {
      return fail("a key of the archive appears twice");
    }
  }
  return pairs;
}

}  // namespace

Result<Value> unarchive(std::span<const std::uint8_t> bytes) {
  const Result<ArchiveObjects> objects = ArchiveObjects::open(bytes);
  if (!objects) return objects.error();
  Unarchiver unarchiver(*objects, bytes.size());
  std::optional<Value> root = unarchiver.value(objects->root(), 0);
  if (!root) return Error{unarchiver.problem()};
  return std::move(*root);
}

}  // namespace pelmora::plist
