#pragma once

#include "platform/MetadataQuery.h"

#include <mutex>
#include <string>
#include <vector>

namespace pelmora::platform {

/// Finds nothing, and writes down what it is told. Thread: main, but for the updates, any.
class FakeMetadataQuery : public MetadataQuery {
 public:
  void setPredicate(predicate::Predicate predicate) override;
  void setSearchScopes(SearchScopes scopes) override;
  [[nodiscard]] SearchScopes searchScopes() const override { return _scopes; }
  void start() override;
  void stop() override;
  void disableUpdates() override { write("disableUpdates"); }
  void enableUpdates() override { write("enableUpdates"); }
  void waitUntilGathered() override { write("waitUntilGathered"); }

  [[nodiscard]] bool isStarted() const { return _started; }
  [[nodiscard]] const predicate::Predicate& predicate() const { return _predicate; }
  /// The names of the functions that were called, and of `setSearchScopes` the scopes after it, a
  /// space before each.
  [[nodiscard]] std::vector<std::string> calls() const;

 private:
  void write(std::string call);

  bool _started = false;
  predicate::Predicate _predicate;
  SearchScopes _scopes;
  mutable std::mutex _mutex;  // guards the calls
  std::vector<std::string> _calls;
};

}  // namespace pelmora::platform
