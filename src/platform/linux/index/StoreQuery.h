#pragma once

#include "platform/linux/index/MetadataStore.h"
#include "platform/linux/index/PredicateSql.h"
#include "platform/linux/index/StoreConnection.h"

#include <string>
#include <vector>

namespace pelmora::platform {

/// A predicate as a statement, which is made for the connection that is asked and kept until
/// another is. Thread: the store's. Errors: `SqliteError`.
class StoreQuery {
 public:
  explicit StoreQuery(const predicate::Predicate& predicate);

  /// The files in a folder that match and are newer than a revision, in no order. Connections have
  /// different serials.
  [[nodiscard]] std::vector<std::string> matches(StoreConnection& connection,
                                                 std::uint64_t connectionSerial,
                                                 MetadataStore::FolderId folder,
                                                 MetadataStore::Revision since);

 private:
  void prepare(StoreConnection& connection);

  predicate::Predicate _predicate;
  SqlCondition _condition;
  std::string _folder;  // with a slash behind it, and then folded: what the parameters borrow
  std::string _foldedFolder;
  SqliteStatement _statement;
  std::uint64_t _connectionSerial = 0;
};

}  // namespace pelmora::platform
