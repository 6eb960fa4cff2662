#include "platform/predicate/PredicateEmptiness.h"
#include "platform/predicate/PredicateText.h"
#include "sources/LockGuards.h"
#include "sources/tests/SourcesTest.h"

#include <gmock/gmock.h>

namespace pelmora::sources {

namespace {

using platform::FakeMetadataQuery;
using platform::predicate::parsePredicate;
using platform::predicate::Predicate;
using platform::predicate::PredicateException;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNotifications[] = {
    platform::NSMetadataQueryGatheringProgressNotification,
    platform::NSMetadataQueryDidUpdateNotification,
    platform::NSMetadataQueryDidFinishGatheringNotification,
};

class PMSourceListFilterTest : public SourcesTest {
 protected:
  PMSourceListFilterTest() {
    (void)temporary.write("p/a.jpg");
    (void)temporary.write("p/b.jpg");
    (void)temporary.write("q/c.jpg");
  }

  void setFilter(const char* text) { list->setSpotlightQuery(parsePredicate(text).value()); }
  [[nodiscard]] FakeMetadataQuery& query() const { return *fakes.metadata.lastQuery(); }

  static plist::Value item(const FilePath& path) {
    return plist::Dictionary{{platform::NSMetadataItemFSNameKey, std::string(path.lastComponent())},
                             {platform::NSMetadataItemPathKey, path.bytes()}};
  }

  /// Posts what a query posts, and waits until the list has taken it.
  void report(plist::Array items, const char* notification = kNotifications[0]) {
    post(notification, {{platform::NSMetadataQueryUpdateAddedItemsKey, std::move(items)}});
  }
  void post(const char* notification, plist::Dictionary userInfo) {
    fakes.notifications.post({notification, {}, std::move(userInfo)});
    list->waitUntilGathered();
  }

  const FilePath p = temporary.path() / "p";
  const FilePath q = temporary.path() / "q";
  const char* const kByName = "kMDItemFSName CONTAINS[cd] 'a'";
};

}  // namespace

TEST_F(PMSourceListFilterTest, runsAQueryOverTheFoldersOfTheRecordsInTheirOrder) {
  makeList();
  list->addFolder(makeFolder("/x", 1), 0, true);
  list->addFolder(makeFolder("/y", 1), 0, true);
  setFilter(kByName);
  EXPECT_THAT(query().calls(), ElementsAre("setPredicate", "setSearchScopes /x /y", "start"));
  EXPECT_EQ(query().predicate(), parsePredicate(kByName).value());
  EXPECT_EQ(list->queer().get(), &query());
}

TEST_F(PMSourceListFilterTest, searchesNowhereWhileThereAreNoRecords) {
  makeList();
  setFilter(kByName);
  EXPECT_THAT(query().searchScopes().all(),
              ElementsAre("I'm not a folde\xC2\xAE that is anywhe\xC2\xAE"
                          "e"));
  EXPECT_TRUE(query().isStarted());
}

TEST_F(PMSourceListFilterTest, replacesThePlaceholderByTheFirstFolderAndAddsTheNext) {
  makeList();
  setFilter(kByName);
  list->addFolder(makeFolder("/x", 1), 0, true);
  EXPECT_THAT(query().searchScopes().all(), ElementsAre("/x"));
  list->addFolder(makeFolder("/y", 1), 0, true);
  EXPECT_THAT(query().searchScopes().all(), ElementsAre("/x", "/y"));
  EXPECT_TRUE(query().isStarted());
  const std::string placeholder = std::string("setSearchScopes ") + kPlaceholderScope;
  EXPECT_THAT(query().calls(), ElementsAre("setPredicate", placeholder, "start",   //
                                           "stop", "setSearchScopes /x", "start",  //
                                           "stop", "setSearchScopes /x /y", "start"));
}

TEST_F(PMSourceListFilterTest, changesTheScopesOnMainWhileTheWalkWaits) {
  setSources({{.folder = p}});
  makeList();
  FakeMetadataQuery& filter = useFilter();
  bool hadScope = false;
  fakes.notifications.addObserver("FirstFolderAdded", [&](const auto&) {
    hadScope = filter.searchScopes().all() == Names{p.bytes()};
  });
  list->loadSourcesFromPrefs(fakes.preferences, true, false);
  runUntilWalked();
  EXPECT_TRUE(hadScope);
  EXPECT_THAT(filter.searchScopes().all(), ElementsAre(p.bytes()));
}

TEST_F(PMSourceListFilterTest, endsWhileAWalkWaitsForMain) {
  setSources({{.folder = p}});
  makeList();
  (void)useFilter();
  list->loadSourcesFromPrefs(fakes.preferences, true, false);
  list.reset();
  fakes.scheduler.runPosted();
}

TEST_F(PMSourceListFilterTest, leavesAFilterAloneOnceTheWalkIsCancelled) {
  setSources({{.folder = p}});
  makeList();
  FakeMetadataQuery& filter = useFilter();
  const std::size_t calls = filter.calls().size();
  list->loadSourcesFromPrefs(fakes.preferences, true, false);
  fakes.scheduler.post([this] { list->cancelOperations(); });
  list->cancelOperations();
  runUntilWalked();
  EXPECT_EQ(filter.calls().size(), calls);
}

TEST_F(PMSourceListFilterTest, looksThroughACompoundOfOneThing) {
  makeList();
  const Predicate condition = parsePredicate(kByName).value();
  list->setSpotlightQuery(
      platform::predicate::Compound{platform::predicate::CompoundType::conjunction, {condition}});
  EXPECT_EQ(query().predicate(), condition);
  setFilter("kMDItemFSName CONTAINS 'a' OR kMDItemFSName CONTAINS 'b'");
  EXPECT_TRUE(query().predicate().get<platform::predicate::Compound>());
}

TEST_F(PMSourceListFilterTest, looksThroughANegationToo) {
  // Kept on purpose: any compound of one thing is replaced by it, and so NOT is lost.
  makeList();
  setFilter("NOT kMDItemFSName CONTAINS 'a'");
  EXPECT_EQ(query().predicate(), parsePredicate("kMDItemFSName CONTAINS 'a'").value());
}

TEST_F(PMSourceListFilterTest, isOffForAnEmptyPredicateAndDrawsFromAllNamesAgain) {
  load({{.folder = p}});
  setFilter(kByName);
  EXPECT_EQ(list->randomFolderForScreen(0), nullptr);
  FakeMetadataQuery& former = query();
  setFilter("kMDItemFSName CONTAINS ''");
  EXPECT_EQ(list->queer(), nullptr);
  EXPECT_EQ(&query(), &former) << "made no other";
  EXPECT_EQ(list->observerForQueryGatheringProgress(), nullptr);
  EXPECT_EQ(list->observerForQueryDidUpdate(), nullptr);
  EXPECT_EQ(list->observerForQueryFinishedGather(), nullptr);
  list->resetWeights();
  EXPECT_EQ(list->randomFolderForScreen(0), recordOf(p));
}

TEST_F(PMSourceListFilterTest, endsTheFormerFilterBeforeAnother) {
  makeList();
  setFilter(kByName);
  const auto former = list->queer();
  setFilter("kMDItemFSName CONTAINS 'b'");
  EXPECT_EQ(fakes.metadata.queryCount(), 2);
  EXPECT_NE(list->queer(), former);
  EXPECT_EQ(static_cast<FakeMetadataQuery&>(*former).calls().back(), "stop");
  list->setSpotlightQuery(std::nullopt);
  EXPECT_EQ(list->queer(), nullptr);
}

TEST_F(PMSourceListFilterTest, isOffAfterAPredicateThatNoEditorMakes) {
  makeList();
  setFilter(kByName);
  EXPECT_THROW(setFilter("kMDItemFSSize < 5"), PredicateException);
  EXPECT_EQ(list->queer(), nullptr);
  EXPECT_EQ(list->observerForQueryDidUpdate(), nullptr);
}

TEST_F(PMSourceListFilterTest, hearsEachNotificationOnAQueueOfItsName) {
  makeList();
  setFilter(kByName);
  const auto nameOf = [](QueueObserver* observer) { return observer->queue().config().name; };
  EXPECT_EQ(nameOf(list->observerForQueryGatheringProgress()),
            "queue for query gathering progress");
  EXPECT_EQ(nameOf(list->observerForQueryDidUpdate()), "queue for query did update");
  EXPECT_EQ(nameOf(list->observerForQueryFinishedGather()), "queue for query finished gather");
}

TEST_F(PMSourceListFilterTest, givesTheRecordsTheNamesThatAnyNotificationReports) {
  load({{.folder = p}, {.folder = q}});
  setFilter(kByName);
  fakes.log.clear();
  report({item(p / "a.jpg")}, kNotifications[0]);
  report({item(p / "b.jpg"), item(q / "c.jpg")}, kNotifications[1]);
  report({item(q / "d.jpg")}, kNotifications[2]);
  EXPECT_THAT(recordOf(p)->spotlightFilenames, ElementsAre("a.jpg", "b.jpg"));
  EXPECT_THAT(recordOf(q)->spotlightFilenames, ElementsAre("c.jpg", "d.jpg"));
  EXPECT_THAT(fakes.log.lines(),
              ElementsAre("Spotlight found 1 images.", "Spotlight found 2 images.",
                          "Spotlight found 1 images."));
}

TEST_F(PMSourceListFilterTest, findsTheRecordByWhatTheFolderIsNotByItsPath) {
  load({{.folder = p}});
  setFilter(kByName);
  temporary.link("other", "p");
  report({item(temporary.path() / "other" / "a.jpg")});
  EXPECT_THAT(recordOf(p)->spotlightFilenames, ElementsAre("a.jpg"));
}

TEST_F(PMSourceListFilterTest, pausesTheQueryWhileItTakesAReport) {
  load({{.folder = p}});
  setFilter(kByName);
  const auto before = static_cast<std::ptrdiff_t>(query().calls().size());
  report({});
  Names calls = query().calls();
  calls.erase(calls.begin(), calls.begin() + before);
  std::erase(calls, "waitUntilGathered");
  EXPECT_THAT(calls, ElementsAre("disableUpdates", "enableUpdates"));
}

TEST_F(PMSourceListFilterTest, listsTwiceWhatIsReportedTwice) {
  // Kept on purpose: names are appended without a look at those that are there.
  load({{.folder = p}});
  setFilter(kByName);
  report({item(p / "a.jpg"), item(p / "a.jpg")});
  EXPECT_THAT(recordOf(p)->spotlightFilenames, ElementsAre("a.jpg", "a.jpg"));
  (void)list->randomFolderForScreen(0);
  EXPECT_THAT(list->weightsSums(), testing::Contains(2U)) << "weighs double";
}

TEST_F(PMSourceListFilterTest, forgetsAFileWhoseFolderIsNoRecordYet) {
  load({{.folder = p}});
  setFilter(kByName);
  report({item(q / "c.jpg")});
  auto record = std::make_shared<PMFolder>(
      q, false, PMFolder::Contents{.contentNames = makeNameList(Names{"c.jpg"})}, 1.0, "", 127);
  record->identity = services.files.facts(q, platform::FinalLink::follow)->identity;
  list->addFolder(record, 0, true);
  EXPECT_THAT(record->spotlightFilenames, IsEmpty());
}

TEST_F(PMSourceListFilterTest, resetsTheWeightsEvenForAReportOfNothing) {
  load({{.folder = p}});
  setFilter(kByName);
  report({item(p / "a.jpg")});
  (void)list->randomFolderForScreen(0);
  ASSERT_THAT(list->weightsSums(), testing::Contains(1U));
  fakes.log.clear();
  post(kNotifications[2], {});
  EXPECT_THAT(list->weightsSums(), testing::Each(0U));
  EXPECT_THAT(fakes.log.lines(), ElementsAre("Spotlight found 0 images."));
  EXPECT_THAT(recordOf(p)->spotlightFilenames, ElementsAre("a.jpg"));
}

TEST_F(PMSourceListFilterTest, skipsReportsThatMakeNoSense) {
  load({{.folder = p}});
  setFilter(kByName);
  fakes.log.clear();
  report({plist::Value("text"), plist::Value(),
          plist::Dictionary{{platform::NSMetadataItemFSNameKey, "a.jpg"}},
          plist::Dictionary{{platform::NSMetadataItemFSNameKey, 5},
                            {platform::NSMetadataItemPathKey, (p / "a.jpg").bytes()}},
          plist::Dictionary{{platform::NSMetadataItemFSNameKey, "a.jpg"},
                            {platform::NSMetadataItemPathKey, "a.jpg"}},
          item(temporary.path() / "gone" / "a.jpg")});
  post(kNotifications[1], {{platform::NSMetadataQueryUpdateAddedItemsKey, "nothing"}});
  EXPECT_THAT(recordOf(p)->spotlightFilenames, IsEmpty());
  EXPECT_THAT(fakes.log.lines(),
              ElementsAre("Spotlight found 6 images.", "Spotlight found 0 images."));
}

TEST_F(PMSourceListFilterTest, stopsWithTheLastUnloadAndHearsNothingMore) {
  load({{.folder = p}});
  setFilter(kByName);
  list->loadSourcesFromPrefs(fakes.preferences, true, false);
  list->unloadSources();
  EXPECT_TRUE(query().isStarted());
  EXPECT_NE(list->observerForQueryDidUpdate(), nullptr);
  list->unloadSources();
  EXPECT_FALSE(query().isStarted());
  EXPECT_EQ(list->queer().get(), &query()) << "kept on purpose";
  EXPECT_EQ(list->observerForQueryGatheringProgress(), nullptr);
  EXPECT_EQ(list->observerForQueryDidUpdate(), nullptr);
  EXPECT_EQ(list->observerForQueryFinishedGather(), nullptr);
  fakes.log.clear();
  report({item(p / "a.jpg")});
  EXPECT_THAT(fakes.log.lines(), IsEmpty());
}

TEST_F(PMSourceListFilterTest, forgetsTheNamesWithTheRecords) {
  load({{.folder = p}});
  setFilter(kByName);
  report({item(p / "a.jpg")});
  list->unloadSources();
  list->loadSourcesFromPrefs(fakes.preferences, true, false);
  runUntilWalked();
  EXPECT_THAT(recordOf(p)->spotlightFilenames, IsEmpty());
}

}  // namespace pelmora::sources
