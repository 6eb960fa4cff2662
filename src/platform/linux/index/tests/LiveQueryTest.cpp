#include "platform/linux/index/LiveQuery.h"

#include "platform/linux/index/tests/IndexFixture.h"

#include <gmock/gmock.h>

namespace pelmora::platform {

namespace {

class LiveQueryTest : public IndexFixture {
 protected:
  LiveQueryTest() {
    query.setPredicate(parse("kMDItemTitle == 'one'"));
    query.addScopes({folder});
  }
  void put(const char* name, const char* title) {
    metadata::FileMetadata metadata;
    metadata.set("kMDItemTitle", {predicate::Constant(title)});
    store.put(store.folderId(folder), folder, {{name, {1, 2, ++_changes, 0}, metadata}});
  }
  void look(bool isUpToDate) { query.look(store, folder, store.folderId(folder), isUpToDate); }

  const FilePath folder{"/pictures"};
  MetadataStore store{FilePath(), [](const std::string&) {}};
  std::shared_ptr<QueryState> state = std::make_shared<QueryState>();
  LiveQuery query{fakes.notifications, state};

 private:
  std::int64_t _changes = 0;
};

}  // namespace

TEST_F(LiveQueryTest, reportsWhatMatchesThenTheEndAndThenWhatComes) {
  put("a.jpg", "one");
  put("b.jpg", "two");
  query.start(1);
  look(true);
  query.report(true);
  query.report(true);
  EXPECT_EQ(reported, (Reported{{"/pictures/a.jpg", 1}}));
  put("b.jpg", "one");
  look(true);
  query.report(true);
  EXPECT_EQ(reported, (Reported{{"/pictures/a.jpg", 1}, {"/pictures/b.jpg", 1}}));
  EXPECT_THAT(posts, testing::ElementsAre(NSMetadataQueryGatheringProgressNotification,
                                          NSMetadataQueryDidFinishGatheringNotification,
                                          NSMetadataQueryDidUpdateNotification));
}

TEST_F(LiveQueryTest, reportsAFileOnceHoweverOftenItChangesAndIsSearched) {
  put("a.jpg", "one");
  query.start(1);
  look(true);
  query.report(true);
  put("a.jpg", "two");
  look(true);
  put("a.jpg", "one");
  look(true);
  query.stop();
  query.addScopes({folder});
  query.start(2);
  look(true);
  query.report(true);
  EXPECT_EQ(reported, (Reported{{"/pictures/a.jpg", 1}}));
}

TEST_F(LiveQueryTest, keepsQuietWhileUpdatesAreDisabledOrItIsStopped) {
  put("a.jpg", "one");
  look(true);
  query.report(true);
  EXPECT_THAT(posts, testing::IsEmpty());
  query.start(1);
  state->disabled = 1;
  query.report(true);
  EXPECT_THAT(posts, testing::IsEmpty());
  state->disabled = 0;
  query.report(true);
  EXPECT_EQ(reported.size(), 1U);
}

TEST_F(LiveQueryTest, endsTheGatheringOnceAllFoldersAreUpToDate) {
  query.addScopes({FilePath("/other")});
  state->begin(1);
  query.start(1);
  look(true);
  query.report(true);
  EXPECT_THAT(posts, testing::IsEmpty());
  query.look(store, FilePath("/other"), store.folderId(FilePath("/other")), true);
  query.report(true);
  EXPECT_THAT(posts, testing::ElementsAre(NSMetadataQueryDidFinishGatheringNotification));
  state->waitUntilFinished();
}

TEST_F(LiveQueryTest, reportsAllAtOnceHoweverManyThereAre) {
  metadata::FileMetadata metadata;
  metadata.set("kMDItemTitle", {predicate::Constant("one")});
  std::vector<MetadataStore::Entry> entries;
  for (int i = 0; i < 2500; ++i) entries.push_back({std::to_string(i), {1, 2, 3, 0}, metadata});
  store.put(store.folderId(folder), folder, entries);
  query.start(1);
  look(true);
  query.report(true);
  EXPECT_EQ(reported.size(), 2500U);
  EXPECT_THAT(posts, testing::ElementsAre(NSMetadataQueryGatheringProgressNotification,
                                          NSMetadataQueryGatheringProgressNotification,
                                          NSMetadataQueryGatheringProgressNotification,
                                          NSMetadataQueryDidFinishGatheringNotification));
}

TEST_F(LiveQueryTest, gathersAFolderThatHasNothingForNowAndFindsItsFilesLater) {
  put("a.jpg", "one");
  query.start(1);
  EXPECT_TRUE(query.look(store, folder, 0, true));
  query.report(true);
  EXPECT_THAT(posts, testing::ElementsAre(NSMetadataQueryDidFinishGatheringNotification));
  EXPECT_THAT(reported, testing::IsEmpty());
  look(true);
  query.report(true);
  EXPECT_EQ(reported.size(), 1U);
}

TEST_F(LiveQueryTest, tellsTheScopesThatItLeaves) {
  EXPECT_THAT(query.setScopes({FilePath("/other")}), testing::ElementsAre(folder));
  EXPECT_FALSE(query.searches(folder));
  EXPECT_THAT(query.scopes(), testing::ElementsAre(FilePath("/other")));
}

}  // namespace pelmora::platform
