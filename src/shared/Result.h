#pragma once

#include <cassert>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace pelmora {

/// Why something failed, in one line for the log.
struct Error {
  std::string message;
};

/// A value or the reason why there is none. For failures whose reason matters; where it does not,
/// `std::optional` is used.
template <typename T>
class [[nodiscard]] Result {
 public:
  // Implicit on purpose: `return value;` and `return Error{"…"};` both read well.
  Result(T value) : _state(std::move(value)) {}
  Result(Error error) : _state(std::move(error)) {}

  [[nodiscard]] bool ok() const { return _state.index() == 0; }
  explicit operator bool() const { return ok(); }

  [[nodiscard]] T& value() & { return *checked(std::get_if<0>(&_state)); }
  [[nodiscard]] const T& value() const& { return *checked(std::get_if<0>(&_state)); }
  [[nodiscard]] T&& value() && { return std::move(*checked(std::get_if<0>(&_state))); }
  [[nodiscard]] const Error& error() const { return *checked(std::get_if<1>(&_state)); }

  T& operator*() & { return value(); }
  const T& operator*() const& { return value(); }
  T&& operator*() && { return std::move(*this).value(); }
  T* operator->() { return &value(); }
  const T* operator->() const { return &value(); }

 private:
  template <typename P>
  static P checked(P pointer) {
    assert(pointer && "a Result was read as what it is not");
    return pointer;
  }

  std::variant<T, Error> _state;
};

/// The outcome of something that yields nothing but may fail.
struct Done {};
using Status = Result<Done>;

}  // namespace pelmora
