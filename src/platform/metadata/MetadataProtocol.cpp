#include "platform/metadata/MetadataProtocol.h"

#include "platform/PlainText.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

namespace pelmora::platform::metadata {

namespace {

using predicate::Constant;

// For each attribute its position, the number of its values, and these: numbers as they are, texts
// behind their length.
using Position = std::uint8_t;
using Count = std::uint16_t;
using Length = std::uint16_t;

constexpr std::size_t kMaxBytes = kMaxReplyBytes - sizeof(InspectReply);

static_assert(kMaxValues <= std::numeric_limits<Count>::max());
static_assert(kMaxTextBytes <= std::numeric_limits<Length>::max());

Error breach(const char* what) { return Error{what}; }

template <typename T>
void append(const T& value, std::vector<std::byte>& out) {
  const auto bytes = std::as_bytes(std::span(&value, 1));
  out.insert(out.end(), bytes.begin(), bytes.end());
}

void appendValue(const Constant& value, std::vector<std::byte>& out) {
  if (const auto* text = value.get<std::string>()) {
    append(static_cast<Length>(text->size()), out);
    const auto bytes = std::as_bytes(std::span(*text));
    out.insert(out.end(), bytes.begin(), bytes.end());
  } else if (const auto* whole = value.get<std::int64_t>()) {
    append(*whole, out);
  } else if (const auto* real = value.get<double>()) {
    append(*real, out);
  } else if (const auto* date = value.get<ReferenceTime>()) {
    append(date->seconds, out);
  }
}

/// Whether it is as the reader wants it.
bool canBeSent(const Constant& value) {
  const auto* const text = value.get<std::string>();
  return !text || (!text->empty() && text->size() <= kMaxTextBytes && isPlainText(*text));
}

void appendAttribute(std::size_t position, const std::vector<Constant>& values,
                     std::vector<std::byte>& out) {
  const auto count = std::count_if(values.begin(), values.end(), canBeSent);
  if (count == 0) return;
  append(static_cast<Position>(position), out);
  append(static_cast<Count>(count), out);
  for (const Constant& value : values) {
    if (canBeSent(value)) appendValue(value, out);
  }
}

/// Takes values off the begin of bytes; what is not there is nullopt.
class Reader {
 public:
  explicit Reader(std::span<const std::byte> bytes) : _bytes(bytes) {}

  [[nodiscard]] bool isAtEnd() const { return _bytes.empty(); }

  template <typename T>
  std::optional<T> take() {
    if (_bytes.size() < sizeof(T)) return std::nullopt;
    T value{};
    std::memcpy(&value, _bytes.data(), sizeof value);
    _bytes = _bytes.subspan(sizeof value);
    return value;
  }

  std::optional<std::string> takeText() {
    const std::optional<Length> length = take<Length>();
    if (!length || *length > _bytes.size()) return std::nullopt;
    std::string text(reinterpret_cast<const char*>(_bytes.data()), *length);
    _bytes = _bytes.subspan(*length);
    return text;
  }

 private:
  std::span<const std::byte> _bytes;
};

Result<Constant> takeText(Reader& reader) {
  std::optional<std::string> text = reader.takeText();
  if (!text) return breach("a text that ends early");
  if (text->empty() || text->size() > kMaxTextBytes) return breach("a text of a wrong length");
  if (!isPlainText(*text)) return breach("a text that is none");
  return Constant(*std::move(text));
}

Result<Constant> takeValue(ValueType type, Reader& reader) {
  if (type == ValueType::text) return takeText(reader);
  if (type == ValueType::integer) {
    const std::optional<std::int64_t> whole = reader.take<std::int64_t>();
    if (!whole) return breach("a number that ends early");
    return Constant(*whole);
  }
  const std::optional<double> number = reader.take<double>();
  if (!number) return breach("a number that ends early");
  if (!std::isfinite(*number)) return breach("a number that is none");
  return type == ValueType::date ? Constant(ReferenceTime{*number}) : Constant(*number);
}

Status takeAttribute(Reader& reader, FileMetadata::Values& all) {
  const std::optional<Position> position = reader.take<Position>();
  const std::optional<Count> count = reader.take<Count>();
  if (!position || !count) return breach("an attribute that ends early");
  if (*position >= attributeTable().size()) return breach("no such attribute");
  const Attribute& attribute = attributeTable()[*position];
  if (attribute.origin == Origin::file) return breach("an attribute that is not embedded");
  if (!all.empty() && all.rbegin()->first >= *position) return breach("attributes out of order");
  if (*count == 0 || *count > (attribute.hasSeveral ? kMaxValues : 1)) {
    return breach("a wrong number of values");
  }
  std::vector<Constant>& values = all[*position];
  for (Count i = 0; i < *count; ++i) {
    Result<Constant> value = takeValue(attribute.type, reader);
    if (!value) return value.error();
    values.push_back(*std::move(value));
  }
  return Done{};
}

}  // namespace

std::vector<std::byte> encodeMetadata(const FileMetadata& metadata) {
  std::vector<std::byte> all;
  for (const auto& [position, values] : metadata.all()) {
    if (attributeTable()[position].origin == Origin::file) continue;
    const std::size_t before = all.size();
    appendAttribute(position, values, all);
    if (all.size() > kMaxBytes) all.resize(before);
  }
  return all;
}

Result<FileMetadata> decodeMetadata(std::span<const std::byte> bytes) {
  if (bytes.size() > kMaxBytes) return breach("too much");
  FileMetadata::Values all;
  Reader reader(bytes);
  while (!reader.isAtEnd()) {
    if (const Status status = takeAttribute(reader, all); !status) return status.error();
  }
  return FileMetadata(std::move(all));
}

}  // namespace pelmora::platform::metadata
