#include "platform/linux/index/MetadataIndex.h"

#include "platform/linux/index/tests/IndexFixture.h"
#include "platform/linux/SystemClock.h"

#include <future>

namespace pelmora::platform {

namespace {

class MetadataIndexTest : public IndexFixture {
 protected:
  const FilePath folder = temporary.mkdir("pictures");
  SystemClock clock;
  MetadataIndex index{tools()};

  MetadataIndex::Tools tools() { return tools(temporary.path() / "index"); }
  MetadataIndex::Tools tools(const FilePath& file) {
    return {.files = fakes.files,
            .log = fakes.log,
            .clock = clock,
            .notifications = fakes.notifications,
            .inspect = inspect(),
            .file = [file] { return file; }};
  }
  static std::vector<std::string> suggestedBy(MetadataIndex& asked, const char* attribute) {
    std::promise<std::vector<std::string>> answer;
    asked.suggestValues(attribute, 10, [&](std::vector<std::string> values) {
      answer.set_value(std::move(values));
    });
    return answer.get_future().get();
  }
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
    MetadataIndex shortLived(tools(FilePath()));
    const auto query = shortLived.makeQuery();
    query->setPredicate(parse("TRUEPREDICATE"));
    query->setSearchScopes(SearchScopes({folder.bytes()}));
    query->start();
    query->waitUntilGathered();
  }
}

TEST_F(MetadataIndexTest, suggestsValuesOfAStoredIndexWithoutAQuery) {
  temporary.write("pictures/a.jpg", "one");
  temporary.write("pictures/b.jpg", "two");
  temporary.write("pictures/c.jpg", "two");
  {
    MetadataIndex before(tools());
    const auto query = before.makeQuery();
    query->setPredicate(parse("TRUEPREDICATE"));
    query->setSearchScopes(SearchScopes({folder.bytes()}));
    query->start();
    query->waitUntilGathered();
  }
  filesRead = 0;
  EXPECT_EQ(suggestedBy(index, "kMDItemTitle"), (std::vector<std::string>{"two", "one"}));
  EXPECT_EQ(suggestedBy(index, "nosuch"), std::vector<std::string>());
  EXPECT_EQ(filesRead, 0);
}

TEST_F(MetadataIndexTest, suggestsNothingWhereNothingIsStoredOrCanBe) {
  EXPECT_EQ(suggestedBy(index, "kMDItemTitle"), std::vector<std::string>());
  MetadataIndex inNoFolder(tools(temporary.write("file", "") / "index"));
  EXPECT_EQ(suggestedBy(inNoFolder, "kMDItemTitle"), std::vector<std::string>());
  MetadataIndex damaged(tools(temporary.write("damaged/index", "this is no database")));
  EXPECT_EQ(suggestedBy(damaged, "kMDItemTitle"), std::vector<std::string>());
}

TEST_F(MetadataIndexTest, endsWhileItIsAskedForValues) {
  for (int round = 0; round < 20; ++round) {
    MetadataIndex shortLived(tools(FilePath()));
    shortLived.suggestValues("kMDItemTitle", 10, [](const std::vector<std::string>&) {});
  }
}

}  // namespace pelmora::platform
