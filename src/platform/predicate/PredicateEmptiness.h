#pragma once

#include "platform/Log.h"
#include "platform/predicate/Predicate.h"

#include <exception>
#include <string>
#include <utility>

namespace pelmora::platform::predicate {

/// A predicate that no editor could have made.
class PredicateException : public std::exception {
 public:
  PredicateException(std::string name, std::string reason)
      : _name(std::move(name)), _reason(std::move(reason)) {}
  [[nodiscard]] const std::string& name() const { return _name; }
  [[nodiscard]] const std::string& reason() const { return _reason; }
  [[nodiscard]] const char* what() const noexcept override { return _reason.c_str(); }

 private:
  std::string _name;
  std::string _reason;
};

/// Whether a predicate asks for nothing yet: every comparison in it is with an empty text. Only the
/// right side of comparisons is looked at; what else than a text stands there is logged, and empty.
/// Throws `PredicateException` for comparisons by any operator that editors don't offer, and for
/// what is neither a comparison nor a compound. Thread: any.
[[nodiscard]] bool isEmpty(const Predicate& predicate, Log& log);

}  // namespace pelmora::platform::predicate
