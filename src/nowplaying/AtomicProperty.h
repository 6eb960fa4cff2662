#pragma once

#include <mutex>
#include <utility>

namespace pelmora::nowplaying {

/// A value that is read and written as a whole, by any thread.
template <typename T>
class AtomicProperty {
 public:
  AtomicProperty() = default;
  explicit AtomicProperty(T value) : _value(std::move(value)) {}

  [[nodiscard]] T get() const {
    const std::lock_guard lock(_mutex);
    return _value;
  }
  void set(T value) {
    const std::lock_guard lock(_mutex);
    std::swap(_value, value);  // the old one goes after the lock
  }

 private:
  mutable std::mutex _mutex;
  T _value{};
};

}  // namespace pelmora::nowplaying
