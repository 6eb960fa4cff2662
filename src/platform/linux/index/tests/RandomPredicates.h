#pragma once

#include "platform/linux/index/MetadataStore.h"

#include <random>
#include <vector>

namespace pelmora::platform {

/// Files and predicates made up from a seed, of values that are easily taken for one another:
/// missing and empty, composed and decomposed, whole and not, equal but for case. Thread: one.
class RandomPredicates {
 public:
  explicit RandomPredicates(unsigned seed) : _random(seed) {}

  [[nodiscard]] std::vector<MetadataStore::Entry> files(std::size_t count);
  [[nodiscard]] predicate::Predicate comparison();
  /// At most so deep.
  [[nodiscard]] predicate::Predicate predicate(int depth);

 private:
  template <typename T>
  const T& oneOf(const std::vector<T>& choices) {
    return choices[static_cast<std::size_t>(below(static_cast<int>(choices.size())))];
  }
  int below(int end) { return std::uniform_int_distribution<>(0, end - 1)(_random); }

  metadata::FileMetadata metadata();
  predicate::Constant valueOf(metadata::ValueType type);
  predicate::Constant scalar();
  predicate::Constant constant(int depth);
  predicate::Expression expression(bool isLeft);

  std::mt19937 _random;
};

}  // namespace pelmora::platform
