#include "inspector/EmbeddedValue.h"

#include "platform/metadata/FileMetadata.h"

#include <exiv2/version.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace pelmora::inspector {

namespace {

using platform::metadata::kMaxTextBytes;
using platform::metadata::kMaxValues;

template <typename Rational>
std::optional<double> quotient(const Rational& fraction) {
  if (fraction.second == 0) return std::nullopt;
  return static_cast<double>(fraction.first) / static_cast<double>(fraction.second);
}

/// The element of a list of numbers.
template <typename List>
std::optional<double> elementOf(const Exiv2::Value& value, std::size_t index) {
  const auto* const list = dynamic_cast<const List*>(&value);
  if (!list || index >= list->value_.size()) return std::nullopt;
  const auto& element = list->value_[index];
  if constexpr (requires { element.first; }) {
    return quotient(element);
  } else {
    return static_cast<double>(element);
  }
}

std::optional<double> numberIn(std::string_view text) {
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest == text.data()) return std::nullopt;
  if (rest == end) return number;
  if (*rest != '/') return std::nullopt;
  const std::optional<double> divisor =
      numberIn({rest + 1, static_cast<std::size_t>(end - rest - 1)});
  if (!divisor || *divisor == 0) return std::nullopt;
  return number / *divisor;
}

ByteOrder orderOf(const Exiv2::CommentValue& comment) {
  return comment.byteOrder_ == Exiv2::bigEndian ? ByteOrder::bigEndian : ByteOrder::littleEndian;
}

std::string languageOf(const Exiv2::LangAltValue& value) {
  const auto forAll = value.value_.find("x-default");
  if (forAll != value.value_.end()) return textFromBytes(forAll->second);
  return value.value_.empty() ? std::string() : textFromBytes(value.value_.begin()->second);
}

/// What holds one text.
std::string textOf(const Exiv2::Value& value, Otherwise otherwise) {
  if (const auto* text = dynamic_cast<const Exiv2::XmpTextValue*>(&value)) {
    return textFromBytes(text->value_);
  }
  if (const auto* text = dynamic_cast<const Exiv2::StringValueBase*>(&value)) {
    const auto* const comment = dynamic_cast<const Exiv2::CommentValue*>(text);
    return comment ? textFromComment(comment->value_, orderOf(*comment))
                   : textFromBytes(text->value_, otherwise);
  }
  if (const auto* texts = dynamic_cast<const Exiv2::LangAltValue*>(&value)) {
    return languageOf(*texts);
  }
  if (static_cast<std::size_t>(value.size()) > kMaxTextBytes) return {};
  return textFromBytes(value.toString(), otherwise);
}

std::optional<double> numberAt(const Exiv2::Value& value, std::size_t index) {
  switch (value.typeId()) {
    case Exiv2::unsignedShort:
      return elementOf<Exiv2::UShortValue>(value, index);
    case Exiv2::unsignedLong:
    case Exiv2::tiffIfd:
      return elementOf<Exiv2::ULongValue>(value, index);
    case Exiv2::unsignedRational:
      return elementOf<Exiv2::URationalValue>(value, index);
    case Exiv2::signedShort:
      return elementOf<Exiv2::ShortValue>(value, index);
    case Exiv2::signedLong:
      return elementOf<Exiv2::LongValue>(value, index);
    case Exiv2::signedRational:
      return elementOf<Exiv2::RationalValue>(value, index);
    case Exiv2::tiffFloat:
      return elementOf<Exiv2::FloatValue>(value, index);
    case Exiv2::tiffDouble:
      return elementOf<Exiv2::DoubleValue>(value, index);
    default:
      break;
  }
  // Single bytes are written as numbers.
  const std::vector<std::string> texts = index == 0 ? textsOf(value) : std::vector<std::string>();
  return texts.empty() ? std::nullopt : numberIn(texts.front());
}

}  // namespace

std::vector<std::string> textsOf(const Exiv2::Value& value, Otherwise otherwise) {
  std::vector<std::string> texts;
  if (const auto* list = dynamic_cast<const Exiv2::XmpArrayValue*>(&value)) {
    const auto count = std::min(static_cast<std::size_t>(list->count()), 2 * kMaxValues);
    for (std::size_t i = 0; i < count; ++i) {
      texts.push_back(textFromBytes(list->toString(static_cast<long>(i))));
    }
  } else {
    texts.push_back(textOf(value, otherwise));
  }
  std::erase(texts, std::string());
  return texts;
}

std::string textOfWideBytes(const Exiv2::Value& value) {
  const auto size = static_cast<std::size_t>(value.size());
  if (size > 64 * kMaxTextBytes) return {};
  std::string bytes(size, '\0');
  value.copy(reinterpret_cast<Exiv2::byte*>(bytes.data()), Exiv2::littleEndian);
  return textFromUtf16(bytes, ByteOrder::littleEndian);
}

std::optional<double> numberOf(const Exiv2::Value& value, std::size_t index) {
  const std::optional<double> number = numberAt(value, index);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

}  // namespace pelmora::inspector
