#pragma once

#include "platform/PreferencesStore.h"

#include <utility>

namespace pelmora::platform {

/// Preferences that are nowhere but here, and count how often they were synchronised. Thread: main.
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
    _stored.insert_or_assign(std::string(key), std::move(value));
  }
  void removeObject(std::string_view key) override {
    if (const auto stored = _stored.find(key); stored != _stored.end()) _stored.erase(stored);
  }
  Status synchronize() override {
    ++_synchronizations;
    return Done{};
  }

  [[nodiscard]] const plist::Dictionary& registeredDefaults() const { return _defaults; }
  [[nodiscard]] int synchronizations() const { return _synchronizations; }

 private:
  plist::Dictionary _defaults;
  plist::Dictionary _stored;
  int _synchronizations = 0;
};

}  // namespace pelmora::platform
