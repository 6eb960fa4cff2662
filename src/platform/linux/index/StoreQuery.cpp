#include "platform/linux/index/StoreQuery.h"

#include "platform/linux/index/PredicateFunction.h"
#include "platform/linux/index/StoreSchema.h"

namespace pelmora::platform {

namespace {

struct Binder {
  SqliteStatement::Execution& execution;
  int parameter;

  void operator()(std::int64_t value) const { execution.bind(parameter, value); }
  void operator()(double value) const { execution.bind(parameter, value); }
  void operator()(const std::string& bytes) const {
    execution.bind(parameter, std::string_view(bytes));
  }
  void operator()(const PredicateCall* call) const {
    execution.bindPointer(parameter, call, kPredicateCallType);
  }
};

std::string pathOf(StoreConnection& connection, MetadataStore::FolderId folder) {
  auto execution = connection.pathOfFolder.execute();
  execution.bind(1, folder);
  return execution.step() ? std::string(execution.bytes(0)) : std::string();
}

}  // namespace

StoreQuery::StoreQuery(const predicate::Predicate& predicate)
    : _predicate(predicate), _condition(sqlCondition(predicate)) {}

void StoreQuery::prepare(StoreConnection& connection) {
  try {
    _statement = connection.prepareMatches(_condition.sql);
  } catch (const SqliteError&) {
    // It is too deep or too long, which only SQLite knows; or it fails this way too.
    _condition = sqlConditionByOneCall(_predicate);
    _statement = connection.prepareMatches(_condition.sql);
  }
}

std::vector<std::string> StoreQuery::matches(StoreConnection& connection,
                                             std::uint64_t connectionSerial,
                                             MetadataStore::FolderId folder,
                                             MetadataStore::Revision since) {
  if (_connectionSerial != connectionSerial) prepare(connection);
  _connectionSerial = connectionSerial;
  auto execution = _statement.execute();
  execution.bind(1, folder);
  execution.bind(2, since);
  if (_condition.asksForPath) {
    _folder = (FilePath(pathOf(connection, folder)) / "").bytes();
    execution.bind(kFolderPrefixParameter, std::string_view(_folder));
    // Parameters after the last that is mentioned are none.
    if (execution.parameterCount() >= kFoldedPrefixParameter) {
      _foldedFolder = foldedForStore(_folder);
      execution.bind(kFoldedPrefixParameter, std::string_view(_foldedFolder));
    }
  }
  int parameter = kFirstParameter;
  for (const SqlCondition::Parameter& value : _condition.parameters) {
    std::visit(Binder{execution, parameter++}, value);
  }
  std::vector<std::string> names;
  while (execution.step()) names.emplace_back(execution.bytes(0));
  return names;
}

}  // namespace pelmora::platform
