#include "platform/linux/index/MetadataStore.h"

#include "platform/linux/index/FrequentTexts.h"
#include "platform/linux/index/StoreConnection.h"
#include "platform/linux/index/StoreFile.h"
#include "platform/linux/index/StoreQuery.h"
#include "platform/linux/index/StoreSchema.h"

#include <algorithm>
#include <utility>

namespace pelmora::platform {

namespace {

/// What is damaged time and again is not worth to be begun once more.
constexpr int kMostDamages = 3;

using metadata::FileMetadata;
using predicate::Constant;

std::span<const Constant> valuesOf(const FileMetadata& metadata, std::size_t attribute) {
  const auto found = metadata.all().find(attribute);
  if (found == metadata.all().end()) return {};
  return found->second;
}

void bindTexts(SqliteStatement::Execution& execution, int parameter, const StoredColumn& column,
               std::span<const Constant> values) {
  if (metadata::attributeTable()[column.attribute].hasSeveral) {
    const std::string joined = joinedTexts(values, column.form);
    if (!joined.empty()) execution.bindCopy(parameter, joined);
    return;
  }
  const auto* text = values.front().get<std::string>();
  if (!text) return;
  if (column.form == TextForm::raw) return execution.bind(parameter, std::string_view(*text));
  execution.bindCopy(parameter, foldedForStore(*text));
}

/// A parameter that is left out is NULL.
void bindAttribute(SqliteStatement::Execution& execution, int parameter, const StoredColumn& column,
                   std::span<const Constant> values) {
  if (values.empty()) return;
  switch (metadata::attributeTable()[column.attribute].type) {
    case metadata::ValueType::text:
      return bindTexts(execution, parameter, column, values);
    case metadata::ValueType::integer:
      if (const auto* integer = values.front().get<std::int64_t>()) {
        execution.bind(parameter, *integer);
      }
      return;
    case metadata::ValueType::real:
      if (const auto* real = values.front().get<double>()) execution.bind(parameter, *real);
      return;
    case metadata::ValueType::date:
      if (const auto* date = values.front().get<ReferenceTime>()) {
        execution.bind(parameter, date->seconds);
      }
      return;
  }
}

void enter(StoreConnection& connection, MetadataStore::FolderId folder,
           const MetadataStore::Entry& entry) {
  const std::string folded = foldedForStore(entry.name);
  auto execution = connection.enterFile.execute();
  execution.bind(1, folder);
  execution.bind(2, std::string_view(entry.name));
  execution.bind(3, static_cast<std::int64_t>(entry.stamp.inode));
  execution.bind(4, entry.stamp.bytes);
  execution.bind(5, entry.stamp.changeSeconds);
  execution.bind(6, entry.stamp.changeNanoseconds);
  execution.bind(7, std::string_view(folded));
  int parameter = StoreConnection::kOwnParameters;
  for (const StoredColumn& column : storedColumns()) {
    bindAttribute(execution, ++parameter, column, valuesOf(entry.metadata, column.attribute));
  }
  execution.step();
}

/// Whether the folder has this id; it is entered if neither is known.
bool isFolder(StoreConnection& connection, MetadataStore::FolderId folder, const FilePath& path) {
  if (folder == 0) return false;
  {
    auto execution = connection.enterFolderAs.execute();
    execution.bind(1, folder);
    execution.bind(2, std::string_view(path.bytes()));
    execution.step();
  }
  auto execution = connection.pathOfFolder.execute();
  execution.bind(1, folder);
  return execution.step() && execution.bytes(0) == path.bytes();
}

/// Of the `kStampColumns`.
IndexStamp stampIn(const SqliteStatement::Execution& row) {
  return {.inode = static_cast<std::uint64_t>(row.integer(1)),
          .bytes = row.integer(2),
          .changeSeconds = row.integer(3),
          .changeNanoseconds = row.integer(4)};
}

std::vector<std::string> sorted(std::vector<std::string> names) {
  if (!std::is_sorted(names.begin(), names.end())) std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

/// The connection, and what becomes of it when something fails.
struct MetadataStore::State {
  State(FilePath path, Report reportProblem, const Patience& others)
      : file(std::move(path), others), patience(others.atMost), report(std::move(reportProblem)) {
    if (file.path().empty()) {
      useMemory();
    } else if (auto lock = file.lock()) {
      openFile(/*isRunning=*/false);
    } else {
      useMemory(lock.error().message);
    }
  }

  /// Does something with the connection; where that fails, the answer is an empty one.
  template <typename Action>
  auto attempt(const Action& action) -> decltype(action(std::declval<StoreConnection&>())) {
    try {
      return action(*connection);
    } catch (const SqliteError& error) {
      recoverFrom(error);
      return {};
    }
  }

  void recoverFrom(const SqliteError& error);
  void beginAnew(const std::string& why);
  void openFile(bool isRunning);
  void useMemory();
  void useMemory(const std::string& why);
  void tell(const std::string& problem) const {
    if (report) report("the index of metadata " + problem);
  }

  StoreFile file;
  const std::chrono::milliseconds patience;
  Report report;
  std::unique_ptr<StoreConnection> connection;  // there is always one
  std::optional<StoreFile::Identity> identity;  // of the file that is open
  std::optional<StoreFile::Identity> logIdentity;
  bool isInMemory = false;
  bool hasToldBusy = false;
  int damages = 0;
  int damagesInMemory = 0;
  std::uint64_t generation = 1;
  std::uint64_t failures = 0;
};

void MetadataStore::State::recoverFrom(const SqliteError& error) {
  // What fails in memory again and again would for ever: nothing is begun anew for it.
  if (isInMemory && ++damagesInMemory > kMostDamages) return;
  ++failures;
  if (error.kind() == SqliteError::Kind::busy) {
    if (!std::exchange(hasToldBusy, true)) tell(std::string("is in use: ") + error.what());
    return;
  }
  const bool isOurs = !isInMemory && file.identity() == identity;
  if (isInMemory || (isOurs && error.kind() == SqliteError::Kind::unusable)) {
    ++generation;
    return useMemory(error.what());
  }
  beginAnew(error.what());
}

/// The file is damaged, or has gone.
void MetadataStore::State::beginAnew(const std::string& why) {
  ++generation;
  const auto lock = file.lock();
  if (!lock) return useMemory(lock.error().message);
  // Another process may have begun it anew in the meantime. While ours is open, no other file
  // becomes the same one.
  const bool isOurs = file.identity() == identity;
  if (isOurs && ++damages > kMostDamages) return useMemory(why);
  tell("begins anew: " + why);
  if (isOurs) file.takeAway();
  // With another database it would be read into that.
  if (file.logIdentity() == logIdentity) file.takeAwayLog();
  openFile(/*isRunning=*/true);
}

/// While the file is locked.
void MetadataStore::State::openFile(bool isRunning) {
  connection.reset();
  std::string why;
  for (int attempts = 0; attempts < 2; ++attempts) {
    if (Status made = file.make(); !made) return useMemory(made.error().message);
    try {
      connection = std::make_unique<StoreConnection>(file.path().bytes(), patience);
      identity = file.identity();
      logIdentity = file.logIdentity();
      return;
    } catch (const SqliteError& error) {
      why = error.what();
      // Two programs of different versions that run would take it from each other for ever.
      const bool isLeft = isRunning && error.kind() == SqliteError::Kind::otherVersion;
      const bool isDamaged = error.kind() == SqliteError::Kind::damaged ||
                             error.kind() == SqliteError::Kind::otherVersion;
      if (isLeft || !isDamaged || attempts > 0) break;
    }
    tell("begins anew: " + why);
    file.takeAway();
  }
  useMemory(why);
}

void MetadataStore::State::useMemory(const std::string& why) {
  tell("is kept in memory: " + why);
  useMemory();
}

void MetadataStore::State::useMemory() {
  isInMemory = true;
  connection = std::make_unique<StoreConnection>(":memory:");
}

MetadataStore::MetadataStore(FilePath file, Report problem, Patience patience)
    : _state(std::make_unique<State>(std::move(file), std::move(problem), patience)) {}

MetadataStore::~MetadataStore() = default;

bool MetadataStore::isInMemory() const { return _state->isInMemory; }

std::uint64_t MetadataStore::generation() {
  if (!_state->isInMemory && _state->file.identity() != _state->identity) {
    _state->beginAnew("its file was taken away");
  }
  return _state->generation;
}

std::uint64_t MetadataStore::failures() const { return _state->failures; }

MetadataStore::FolderId MetadataStore::folderId(const FilePath& folder) {
  return _state->attempt([&](StoreConnection& connection) -> FolderId {
    for (SqliteStatement* statement : {&connection.folderOfPath, &connection.enterFolder}) {
      auto execution = statement->execute();
      execution.bind(1, std::string_view(folder.bytes()));
      if (!execution.step()) continue;
      const FolderId id = execution.integer(0);
      execution.step();  // to the end, which writes
      return id;
    }
    return 0;
  });
}

std::unordered_map<std::string, IndexStamp> MetadataStore::filesIn(FolderId folder) {
  using Files = std::unordered_map<std::string, IndexStamp>;
  return _state->attempt([&](StoreConnection& connection) {
    Files files;
    auto execution = connection.stampsInFolder.execute();
    execution.bind(1, folder);
    while (execution.step()) {
      files[std::string(execution.bytes(0))] = stampIn(execution);
    }
    return files;
  });
}

std::optional<IndexStamp> MetadataStore::stampOf(FolderId folder, const std::string& name) {
  return _state->attempt([&](StoreConnection& connection) -> std::optional<IndexStamp> {
    auto execution = connection.stampOfFile.execute();
    execution.bind(1, folder);
    execution.bind(2, std::string_view(name));
    if (!execution.step()) return std::nullopt;
    return stampIn(execution);
  });
}

void MetadataStore::put(FolderId folder, const FilePath& path, const std::vector<Entry>& entries) {
  _state->attempt([&](StoreConnection& connection) {
    SqliteTransaction transaction(connection.database);
    if (!isFolder(connection, folder, path)) {
      ++_state->failures;
      return Done{};
    }
    for (const Entry& entry : entries) enter(connection, folder, entry);
    transaction.commit();
    return Done{};
  });
}

void MetadataStore::remove(FolderId folder, const std::vector<std::string>& names) {
  _state->attempt([&](StoreConnection& connection) {
    SqliteTransaction transaction(connection.database);
    for (const std::string& name : names) {
      auto execution = connection.removeFile.execute();
      execution.bind(1, folder);
      execution.bind(2, std::string_view(name));
      execution.step();
    }
    transaction.commit();
    return Done{};
  });
}

void MetadataStore::forgetUnused(int days) {
  _state->attempt([&](StoreConnection& connection) {
    SqliteTransaction transaction(connection.database);
    for (SqliteStatement* statement : {&connection.forgetFiles, &connection.forgetFolders}) {
      auto execution = statement->execute();
      execution.bind(1, std::int64_t{days});
      execution.step();
    }
    transaction.commit();
    return Done{};
  });
}

MetadataStore::Revision MetadataStore::newestRevision() {
  return _state->attempt([](StoreConnection& connection) -> Revision {
    auto execution = connection.newestRevision.execute();
    return execution.step() ? execution.integer(0) : 0;
  });
}

std::shared_ptr<StoreQuery> MetadataStore::prepare(const predicate::Predicate& predicate) {
  return std::make_shared<StoreQuery>(predicate);
}

std::vector<std::string> MetadataStore::matches(StoreQuery& query, FolderId folder,
                                                Revision since) {
  return _state->attempt([&](StoreConnection& connection) {
    return sorted(query.matches(connection, _state->generation, folder, since));
  });
}

std::optional<FileMetadata> MetadataStore::metadataOf(FolderId folder, const std::string& name) {
  return _state->attempt([&](StoreConnection& connection) -> std::optional<FileMetadata> {
    auto execution = connection.attributesOfFile.execute();
    execution.bind(1, folder);
    execution.bind(2, std::string_view(name));
    if (!execution.step()) return std::nullopt;
    const std::string path = (FilePath(std::string(execution.bytes(0))) / name).bytes();
    FileMetadata::Values values;
    int position = 0;
    for (const StoredColumn& column : storedColumns()) {
      if (column.form == TextForm::folded) continue;
      auto found = valuesIn(execution.value(++position), column.attribute);
      if (!found.empty()) values[column.attribute] = std::move(found);
    }
    for (std::size_t i = 0; i < metadata::attributeTable().size(); ++i) {
      if (isName(i)) values[i] = {Constant(name)};
      if (isPath(i)) values[i] = {Constant(path)};
    }
    return FileMetadata(std::move(values));
  });
}

std::vector<std::string> MetadataStore::frequentTexts(std::size_t attribute, std::size_t count,
                                                      const std::function<bool()>& isOver) {
  return _state->attempt([&](StoreConnection& connection) {
    return platform::frequentTexts(connection, attribute, count, isOver);
  });
}

}  // namespace pelmora::platform
