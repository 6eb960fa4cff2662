#pragma once

#include "platform/PropertyList.h"

#include <optional>
#include <string>
#include <string_view>

namespace pelmora::platform {

/// The module's preference domain. What was never written reads as its registered default. A change
/// is visible in the process at once and on disk after `synchronize`; changes made by another
/// process are seen at the next read. Thread: main.
class PreferencesStore {
 public:
  virtual ~PreferencesStore() = default;

  /// Replaces the registered defaults; they are never written.
  virtual void registerDefaults(plist::Dictionary defaults) = 0;
  /// The stored value, else the registered default, else nullopt.
  [[nodiscard]] virtual std::optional<plist::Value> objectForKey(std::string_view key) const = 0;
  /// The stored values alone, without defaults.
  [[nodiscard]] virtual plist::Dictionary storedValues() const = 0;
  virtual void setObject(std::string_view key, plist::Value value) = 0;
  virtual void removeObject(std::string_view key) = 0;
  /// Writes the changes made since the last call, whole or not at all, leaving what other processes
  /// wrote to other keys meanwhile.
  virtual Status synchronize() = 0;

  /// 0 for what is missing or no number.
  [[nodiscard]] std::int64_t integerForKey(std::string_view key) const;
  [[nodiscard]] double doubleForKey(std::string_view key) const;
  /// Whether a checkbox's key turns its feature on: 1 alone does, of all numbers.
  [[nodiscard]] bool isOn(std::string_view key) const { return integerForKey(key) == 1; }
  /// nullopt for what is missing or of another type.
  [[nodiscard]] std::optional<plist::Array> arrayForKey(std::string_view key) const;
  [[nodiscard]] std::optional<plist::Dictionary> dictionaryForKey(std::string_view key) const;
};

}  // namespace pelmora::platform
