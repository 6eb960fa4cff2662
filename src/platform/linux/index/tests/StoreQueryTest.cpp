#include "platform/linux/index/StoreQuery.h"

#include "platform/linux/index/tests/RandomPredicates.h"
#include "platform/predicate/PredicateEvaluation.h"
#include "platform/predicate/PredicateText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace pelmora::platform {
namespace {

using predicate::Comparison;
using predicate::Compound;
using predicate::CompoundType;
using predicate::Constant;
using predicate::KeyPath;
using predicate::Operator;
using predicate::Predicate;

/// A store, and beside it the files as they were put there.
class Library {
 public:
  explicit Library(const std::string& folder) : _path(folder), _folder(_store.folderId(_path)) {}

  void put(const std::vector<MetadataStore::Entry>& entries) {
    _store.put(_folder, _path, entries);
    for (MetadataStore::Entry entry : entries) {
      entry.metadata.set("kMDItemFSName", {Constant(entry.name)});
      entry.metadata.set("kMDItemDisplayName", {Constant(entry.name)});
      entry.metadata.set("kMDItemPath", {Constant((_path / entry.name).bytes())});
      _files[entry.name] = entry.metadata;
    }
  }

  std::vector<std::string> foundBy(const Predicate& predicate) {
    return _store.matches(*_store.prepare(predicate), _folder);
  }

  [[nodiscard]] std::vector<std::string> evaluated(const Predicate& predicate) const {
    std::vector<std::string> names;
    for (const auto& [name, metadata] : _files) {
      if (predicate::matches(predicate, metadata)) names.push_back(name);
    }
    return names;
  }

  /// Both ways have to find the same.
  void check(const Predicate& predicate) {
    ASSERT_EQ(foundBy(predicate), evaluated(predicate)) << predicate::textOf(predicate);
    ASSERT_EQ(_store.generation(), 1u) << predicate::textOf(predicate);
  }

  MetadataStore& store() { return _store; }
  [[nodiscard]] MetadataStore::FolderId folder() const { return _folder; }
  [[nodiscard]] const std::map<std::string, metadata::FileMetadata>& files() const {
    return _files;
  }

 private:
  MetadataStore _store{FilePath(), {}};
  FilePath _path;
  MetadataStore::FolderId _folder;
  std::map<std::string, metadata::FileMetadata> _files;
};

constexpr int kComparisons = 600;
constexpr int kCompounds = 250;
constexpr std::size_t kFiles = 30;

class StoreQuerySeed : public testing::TestWithParam<unsigned> {};

TEST_P(StoreQuerySeed, findsWhatTheEvaluationOfEachFileFinds) {
  RandomPredicates random(GetParam());
  Library library(GetParam() % 2 == 0 ? "/" : "/Bilder/100% 'Été'\xFF\xE2\x82");
  library.put(random.files(kFiles));
  for (int i = 0; i < kComparisons && !HasFatalFailure(); ++i) library.check(random.comparison());
  for (int i = 0; i < kCompounds && !HasFatalFailure(); ++i) library.check(random.predicate(4));
}

TEST_P(StoreQuerySeed, givesBackWhatWasPut) {
  RandomPredicates random(GetParam());
  Library library("/Bilder");
  library.put(random.files(kFiles));
  for (const auto& [name, metadata] : library.files()) {
    EXPECT_EQ(library.store().metadataOf(library.folder(), name), metadata);
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, StoreQuerySeed, testing::Range(1u, 9u));

Predicate widthIs(int width) {
  return Comparison{KeyPath{"kMDItemPixelWidth"}, Operator::equal, Constant(width)};
}

MetadataStore::Entry fileOfWidth(const std::string& name, int width) {
  MetadataStore::Entry entry;
  entry.name = name;
  entry.metadata.set("kMDItemPixelWidth", {Constant(width)});
  return entry;
}

TEST(StoreQuery, takesPredicatesAsDeepAndAsLongAsTheyMayBe) {
  Library library("/Bilder");
  library.put({fileOfWidth("a", 9000), fileOfWidth("b", 9996), fileOfWidth("c", 1)});
  Predicate deep = widthIs(1);
  for (int i = 1; i < predicate::kMaxDepth - 1; ++i) {
    const auto type = static_cast<CompoundType>(i % 3);
    deep = i % 3 == 0 ? Compound{type, {deep}} : Compound{type, {deep, widthIs(-i)}};
  }
  library.check(deep);

  Compound isLong{CompoundType::disjunction, {}};
  for (int i = 5000; i < 9997; ++i) isLong.subpredicates.push_back(widthIs(i));
  library.check(isLong);
  EXPECT_EQ(library.foundBy(isLong), (std::vector<std::string>{"a", "b"}));
}

TEST(StoreQuery, isAskedOfManyFoldersOneAfterAnother) {
  MetadataStore store(FilePath(), {});
  const auto query = store.prepare(
      predicate::parsePredicate("kMDItemPath CONTAINS[cd] 'ete/a' AND kMDItemPixelWidth < 2")
          .value());
  for (const char* path : {"/Été", "/b/Ete", "/c"}) {
    const MetadataStore::FolderId id = store.folderId(FilePath(path));
    store.put(id, FilePath(path), {fileOfWidth("a", 1), fileOfWidth("A", 2), fileOfWidth("b", 1)});
  }
  EXPECT_EQ(store.matches(*query, store.folderId(FilePath("/Été"))).size(), 1u);
  EXPECT_EQ(store.matches(*query, store.folderId(FilePath("/b/Ete"))).size(), 1u);
  EXPECT_EQ(store.matches(*query, store.folderId(FilePath("/c"))).size(), 0u);
  EXPECT_EQ(store.matches(*query, 77).size(), 0u);
}

TEST(StoreQuery, findsWhatIsNewSinceARevision) {
  Library library("/Bilder");
  const auto query = library.store().prepare(widthIs(1));
  const auto foundSince = [&](MetadataStore::Revision since) {
    return library.store().matches(*query, library.folder(), since);
  };
  using Names = std::vector<std::string>;
  library.put({fileOfWidth("b", 1), fileOfWidth("a", 1)});
  EXPECT_EQ(foundSince(0), (Names{"a", "b"}));
  const MetadataStore::Revision before = library.store().newestRevision();
  EXPECT_EQ(foundSince(before), Names{});
  library.put({fileOfWidth("c", 1), fileOfWidth("d", 2), fileOfWidth("a", 1)});
  EXPECT_EQ(foundSince(before), (Names{"a", "c"}));
  EXPECT_EQ(foundSince(library.store().newestRevision()), Names{});
}

}  // namespace
}  // namespace pelmora::platform
