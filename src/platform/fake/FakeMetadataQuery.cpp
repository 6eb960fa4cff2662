#include "platform/fake/FakeMetadataQuery.h"

#include <utility>

namespace pelmora::platform {

void FakeMetadataQuery::start() {
  _started = true;
  _calls.emplace_back("start");
}

void FakeMetadataQuery::stop() {
  _started = false;
  _calls.emplace_back("stop");
}

void FakeMetadataQuery::setSearchScopes(std::vector<std::string> scopes) {
  _scopes = std::move(scopes);
  std::string call = "setSearchScopes";
  for (const std::string& scope : _scopes) call += " " + scope;
  _calls.push_back(std::move(call));
}

}  // namespace pelmora::platform
