#pragma once

#include "platform/fake/FakeMetadataQuery.h"

namespace pelmora::platform {

/// Makes fake queries. Thread: main.
class FakeMetadataSearch : public MetadataSearch {
 public:
  [[nodiscard]] std::unique_ptr<MetadataQuery> makeQuery() override;
  [[nodiscard]] IndexProgress progress() const override { return {}; }

  [[nodiscard]] int queryCount() const { return _queryCount; }
  /// The last query that was made; it may be gone.
  [[nodiscard]] FakeMetadataQuery* lastQuery() const { return _lastQuery; }

 private:
  int _queryCount = 0;
  FakeMetadataQuery* _lastQuery = nullptr;
};

}  // namespace pelmora::platform
