#pragma once

#include "platform/PreferencesStore.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pelmora::platform {

/// Preferences that are nowhere but here, and tell what was done with them. Thread: main.
class MemoryPreferencesStore : public PreferencesStore {
 public:
  void registerDefaults(plist::Dictionary defaults) override { _defaults = std::move(defaults); }
  [[nodiscard]] std::optional<plist::Value> objectForKey(std::string_view key) const override {
    if (const auto stored = _stored.find(key); stored != _stored.end()) return stored->second;
    if (const auto found = _defaults.find(key); found != _defaults.end()) return found->second;
    return std::nullopt;
  }
  [[nodiscard]] plist::Dictionary storedValues() const override { return _stored; }
  void setObject(std::string_view key, plist::Value value) override {
    _written.emplace_back(key);
    _stored.insert_or_assign(std::string(key), std::move(value));
  }
  void removeObject(std::string_view key) override {
    if (const auto stored = _stored.find(key); stored != _stored.end()) _stored.erase(stored);
  }
  Status synchronize() override {
    ++_synchronizations;
    if (_failure) return Error{*_failure};
    return Done{};
  }

  [[nodiscard]] const plist::Dictionary& registeredDefaults() const { return _defaults; }
  [[nodiscard]] int synchronizations() const { return _synchronizations; }
  /// The keys that were written since the last call, in their order.
  [[nodiscard]] std::vector<std::string> takeWritten() { return std::exchange(_written, {}); }
  /// From now on nothing is synchronised, for that reason.
  void failToSynchronize(std::string reason) { _failure = std::move(reason); }

 private:
  plist::Dictionary _defaults;
  plist::Dictionary _stored;
  std::vector<std::string> _written;
  std::optional<std::string> _failure;
  int _synchronizations = 0;
};

}  // namespace pelmora::platform
