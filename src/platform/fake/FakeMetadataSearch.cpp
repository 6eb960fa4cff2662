#include "platform/fake/FakeMetadataSearch.h"

namespace pelmora::platform {

std::unique_ptr<MetadataQuery> FakeMetadataSearch::makeQuery() {
  auto query = std::make_unique<FakeMetadataQuery>();
  _lastQuery = query.get();
  ++_queryCount;
  return query;
}

}  // namespace pelmora::platform
