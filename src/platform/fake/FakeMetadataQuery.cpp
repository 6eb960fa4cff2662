#include "platform/fake/FakeMetadataQuery.h"

#include <utility>

namespace pelmora::platform {

void FakeMetadataQuery::setPredicate(predicate::Predicate predicate) {
  _predicate = std::move(predicate);
  write("setPredicate");
}

void FakeMetadataQuery::setSearchScopes(SearchScopes scopes) {
  _scopes = std::move(scopes);
  std::string call = "setSearchScopes";
  for (const std::string& scope : _scopes.all()) call += " " + scope;
  write(std::move(call));
}

void FakeMetadataQuery::start() {
  _started = true;
  write("start");
}

void FakeMetadataQuery::stop() {
  _started = false;
  write("stop");
}

std::vector<std::string> FakeMetadataQuery::calls() const {
  const std::lock_guard lock(_mutex);
  return _calls;
}

void FakeMetadataQuery::write(std::string call) {
  const std::lock_guard lock(_mutex);
  _calls.push_back(std::move(call));
}

}  // namespace pelmora::platform
