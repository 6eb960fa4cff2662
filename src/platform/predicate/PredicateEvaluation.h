#pragma once

#include "platform/predicate/Predicate.h"

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pelmora::platform::predicate {

/// The attributes of one file. Thread: as the implementation says.
class Metadata {
 public:
  virtual ~Metadata() = default;
  /// The values of an attribute: none when the file doesn't have it, several as of keywords. They
  /// live as long as this does, unchanged.
  [[nodiscard]] virtual std::span<const Constant> values(std::string_view attribute) const = 0;
};

/// Attributes in a map. Thread: a plain value.
class MetadataMap : public Metadata {
 public:
  using Attributes = std::map<std::string, std::vector<Constant>, std::less<>>;

  explicit MetadataMap(Attributes attributes) : _attributes(std::move(attributes)) {}
  [[nodiscard]] std::span<const Constant> values(std::string_view attribute) const override;

 private:
  Attributes _attributes;
};

/// Whether a predicate holds of a file. A comparison holds if any of the attribute's values, or
/// with ALL each of them, satisfies it; where both sides have several, with any of the right
/// side's.
///
/// - Texts as `textSatisfies` says. Numbers by their value, whole or not, a boolean being 0 or 1;
///   dates by their seconds; arrays by their elements. Anything with what is of another kind:
///   false.
/// - IN and CONTAINS: an element of an array that is written in the predicate, or a part of a text.
///   BETWEEN: an array of the least and the greatest value. A comparison with an array goes by the
///   options for the texts in it.
/// - An attribute that is missing: false, and != true. Compared with NULL, == asks for just that,
///   and != whether the attribute is there.
/// - The file itself, an expression or an operator that is not known: false.
///
/// A negation of several, which nothing makes, negates each of them. Thread: any that may use the
/// metadata.
[[nodiscard]] bool matches(const Predicate& predicate, const Metadata& metadata);

}  // namespace pelmora::platform::predicate
