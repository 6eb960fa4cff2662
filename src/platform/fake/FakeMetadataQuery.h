#pragma once

#include "platform/MetadataQuery.h"

namespace pelmora::platform {

/// Finds nothing, and writes down what it is told. Thread: main.
class FakeMetadataQuery : public MetadataQuery {
 public:
  void start() override;
  void stop() override;
  void setSearchScopes(std::vector<std::string> scopes) override;
  [[nodiscard]] std::vector<std::string> searchScopes() const override { return _scopes; }

  [[nodiscard]] bool isStarted() const { return _started; }
  /// "start", "stop", and "setSearchScopes" with the scopes after it, a space before each.
  [[nodiscard]] const std::vector<std::string>& calls() const { return _calls; }

 private:
  bool _started = false;
  std::vector<std::string> _scopes;
  std::vector<std::string> _calls;
};

}  // namespace pelmora::platform
