#pragma once

#include "platform/fake/FakeMetadataQuery.h"

#include <map>
#include <string>
#include <vector>

namespace pelmora::platform {

/// Makes fake queries, and suggests what it is told to. Thread: main.
class FakeMetadataSearch : public MetadataSearch {
 public:
  [[nodiscard]] std::unique_ptr<MetadataQuery> makeQuery() override;
  [[nodiscard]] IndexProgress progress() const override { return {}; }
  /// Answers at once, with what `values` has.
  void suggestValues(std::string attribute, std::size_t count,
                     std::function<void(std::vector<std::string>)> answer) override;

  [[nodiscard]] int queryCount() const { return _queryCount; }
  /// The last query that was made; it may be gone.
  [[nodiscard]] FakeMetadataQuery* lastQuery() const { return _lastQuery; }

  /// The texts of each attribute, in the order in which they are suggested.
  std::map<std::string, std::vector<std::string>> values;

 private:
  int _queryCount = 0;
  FakeMetadataQuery* _lastQuery = nullptr;
};

}  // namespace pelmora::platform
