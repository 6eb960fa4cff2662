#include "platform/fake/FakeMetadataSearch.h"

#include <utility>

namespace pelmora::platform {

std::unique_ptr<MetadataQuery> FakeMetadataSearch::makeQuery() {
  auto query = std::make_unique<FakeMetadataQuery>();
  _lastQuery = query.get();
  ++_queryCount;
  return query;
}

void FakeMetadataSearch::suggestValues(std::string attribute, std::size_t count,
                                       std::function<void(std::vector<std::string>)> answer) {
  const auto found = values.find(attribute);
  std::vector<std::string> texts;
  if (found != values.end()) texts = found->second;
  if (texts.size() > count) texts.resize(count);
  answer(std::move(texts));
}

}  // namespace pelmora::platform
