#include "platform/linux/index/MetadataIndex.h"

#include "platform/linux/index/tests/IndexFixture.h"
#include "platform/linux/SystemClock.h"

namespace pelmora::platform {

namespace {

class MetadataIndexTest : public IndexFixture {
 protected:
  const FilePath folder = temporary.mkdir("pictures");
  SystemClock clock;
  MetadataIndex index{{.files = fakes.files,
                       .log = fakes.log,
                       .clock = clock,
                       .notifications = fakes.notifications,
                       .inspect = inspect(),
                       .file = [this] { return temporary.path() / "index"; }}};
};

}  // namespace

TEST_F(MetadataIndexTest, gathersOnAThreadOfItsOwn) {
  temporary.write("pictures/a.jpg", "one");
  temporary.write("pictures/b.jpg", "two");
  const auto query = index.makeQuery();
  query->setPredicate(parse("kMDItemTitle CONTAINS[cd] 'ONE'"));
  query->setSearchScopes(SearchScopes({folder.bytes()}));
  query->start();
  query->waitUntilGathered();
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1}}));
  EXPECT_EQ(index.progress().filesDone, 2U);
}

TEST_F(MetadataIndexTest, goesOnWithMoreScopesAfterARestart) {
  temporary.write("pictures/a.jpg", "one");
  temporary.write("more/c.jpg", "one");
  const auto query = index.makeQuery();
  query->setPredicate(parse("kMDItemTitle == 'one'"));
  query->setSearchScopes(SearchScopes({"no folder"}));
  query->start();
  query->waitUntilGathered();
  EXPECT_TRUE(reported.empty());
  for (const char* name : {"pictures", "more"}) {
    query->stop();
    SearchScopes scopes = query->searchScopes();
    scopes.append((temporary.path() / name).bytes());
    query->setSearchScopes(scopes);
    query->start();
  }
  query->waitUntilGathered();
  EXPECT_EQ(reported, (Reported{{(folder / "a.jpg").bytes(), 1},
                                {(temporary.path() / "more/c.jpg").bytes(), 1}}));
}

TEST_F(MetadataIndexTest, endsWhileAQueryRunsAndWaitsForNobodyWithoutAStart) {
  const auto query = index.makeQuery();
  query->waitUntilGathered();
  query->setPredicate(parse("TRUEPREDICATE"));
  query->setSearchScopes(SearchScopes({folder.bytes()}));
  query->start();
}

TEST_F(MetadataIndexTest, endsWhateverItIsAtWhenItsQueriesGo) {
  for (int round = 0; round < 40; ++round) {
    MetadataIndex shortLived{{.files = fakes.files,
                              .log = fakes.log,
                              .clock = clock,
                              .notifications = fakes.notifications,
                              .inspect = inspect(),
                              .file = [] { return FilePath(); }}};
    const auto query = shortLived.makeQuery();
    query->setPredicate(parse("TRUEPREDICATE"));
    query->setSearchScopes(SearchScopes({folder.bytes()}));
    query->start();
    query->waitUntilGathered();
  }
}

}  // namespace pelmora::platform
