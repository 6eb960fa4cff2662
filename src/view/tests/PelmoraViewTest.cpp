#include "platform/predicate/PredicateArchive.h"
#include "platform/predicate/PredicateText.h"
#include "view/tests/ViewFixture.h"

#include <algorithm>
#include <cstdlib>
#include <thread>

namespace pelmora::view {

namespace {

constexpr Rect kDisplay1{{0, 0}, {1920, 1080}};
constexpr Rect kDisplay2{{1920, 56}, {1280, 1024}};

platform::Notification firstFolderAdded(std::int64_t screen) {
  return {.name = "FirstFolderAdded", .object = screen, .userInfo = {}};
}

using platform::predicate::parsePredicate;

plist::Bytes archiveOf(const char* text) {
  return platform::predicate::writePredicateArchive(parsePredicate(text).value()).value();
}

int countStarting(const platform::RecordingLog& log, std::string_view begin) {
  const std::vector<std::string> lines = log.lines();
  return static_cast<int>(std::count_if(
      lines.begin(), lines.end(), [begin](const auto& line) { return line.starts_with(begin); }));
}

}  // namespace

class PelmoraViewTest : public ViewFixture {
 protected:
  void connectSecondDisplay() {
    fakes.displays.displays.push_back(platform::FakeDisplays::display(2, kDisplay2));
  }
};

TEST_F(PelmoraViewTest, aWideViewThatTheHostCallsAPreviewRunsAsARealScreen) {
  PelmoraView& wide = makeView(true);
  EXPECT_FALSE(wide.isPreview());
  moveIntoWindow(wide);
  EXPECT_EQ(wide.screenIndex(), 1U);
  EXPECT_EQ(fakes.log.count("Pelmora: isPreview now = 0"), 1U);
}

TEST_F(PelmoraViewTest, aNarrowPreviewStaysOneAndHasIndexZero) {
  PelmoraView preview(services, {{0, 0}, {400, 300}}, true);
  EXPECT_TRUE(preview.isPreview());
  moveIntoWindow(preview);
  EXPECT_EQ(preview.screenIndex(), 0U);
}

TEST_F(PelmoraViewTest, aNarrowViewThatIsNoPreviewDoesNotBecomeOne) {
  EXPECT_FALSE(PelmoraView(services, {{0, 0}, {400, 300}}, false).isPreview());
}

TEST_F(PelmoraViewTest, beliefInTheHostDependsOnTheSystemVersion) {
  const auto isPreviewOn = [this](platform::SystemVersion version) {
    platform::Services older{services};
    older.systemVersion = version;
    const bool isPreview = PelmoraView(older, kDisplay1, true).isPreview();
    sources::PMSourceList::endSharedSourceList();
    return isPreview;
  };
  EXPECT_TRUE(isPreviewOn({10, 14}));
  EXPECT_FALSE(isPreviewOn({10, 15}));
  EXPECT_FALSE(isPreviewOn({11, 0}));
}

TEST_F(PelmoraViewTest, countsDisplaysFromOne) {
  connectSecondDisplay();
  window.display = fakes.displays.displays[1];
  moveIntoWindow(makeView());
  EXPECT_EQ(view->screenIndex(), 2U);
  EXPECT_EQ(fakes.log.count("Pelmora: screenIndex is 2."), 1U);
  EXPECT_EQ(fakes.sound.beeps(), 0);
}

TEST_F(PelmoraViewTest, aWindowWithoutAScreenIsFoundByItsFrameAfterOneBeep) {
  connectSecondDisplay();
  PelmoraView second(services, kDisplay2, false);
  window.display.reset();
  moveIntoWindow(second);
  EXPECT_EQ(second.screenIndex(), 2U);
  EXPECT_EQ(fakes.sound.beeps(), 1);
  EXPECT_EQ(
      fakes.log.count("Pelmora: Failed to get screen for window the window. I'll look it up by "
                      "frame instead."),
      1U);
  EXPECT_EQ(fakes.log.count("Pelmora: my original frame = {{1920, 56}, {1280, 1024}}"), 2U);
}

TEST_F(PelmoraViewTest, aWindowWithoutAScreenThatMatchesNoFrameIsGoofy) {
  PelmoraView lost(services, {{1, 2}, {3, 4}}, false);
  window.display.reset();
  moveIntoWindow(lost);
  EXPECT_EQ(lost.screenIndex(), 9223372036854775808U);
  EXPECT_EQ(fakes.sound.beeps(), 1 + 4);
  EXPECT_EQ(fakes.scheduler.sleeps(), (std::vector<double>{0.75, 0.75, 0.75, 0.75}));
  EXPECT_EQ(fakes.log.countContaining("! Gonna beep 4 times now."), 1U);
  EXPECT_EQ(
      fakes.log.countContaining("Pelmora: Goofy screen index! Screen is: (null)\nScreens are: "),
      1U);
}

TEST_F(PelmoraViewTest, aGoofyScreenShowsNothingAndHarmsNothing) {
  addPictures(3);
  window.display.reset();
  view = std::make_unique<PelmoraView>(services, Rect{{1, 2}, {3, 4}}, false);
  moveIntoWindow(*view);
  view->startAnimation();
  waitForWalk();
  frames(3);
  EXPECT_TRUE(view->images().empty());
}

TEST_F(PelmoraViewTest, takesTheNewsOfAFirstFolderOnceAndOnlyItsOwn) {
  moveIntoWindow(makeView());
  view->startAnimation();
  // The handler leaves nothing to see but its absence, so the centre is asked: an observer that is
  // gone is not called.
  fakes.notifications.post(firstFolderAdded(3));
  EXPECT_TRUE(view->observesFirstFolder());
  fakes.notifications.post(firstFolderAdded(0));
  EXPECT_FALSE(view->observesFirstFolder());
  EXPECT_EQ(view->lastImageChangeTime(), ReferenceTime::distantPast().seconds);
}

TEST_F(PelmoraViewTest, theNewsOfScreenZeroIsForEveryView) {
  connectSecondDisplay();
  PelmoraView first(services, kDisplay1, false);
  PelmoraView second(services, kDisplay2, false);
  fakes.notifications.post(firstFolderAdded(0));
  EXPECT_FALSE(first.observesFirstFolder());
  EXPECT_FALSE(second.observesFirstFolder());
}

TEST_F(PelmoraViewTest, newsFromAnotherThreadMayComeWhileTheViewGoes) {
  for (int i = 0; i < 20; ++i) {
    makeView();
    std::thread other([this] { fakes.notifications.post(firstFolderAdded(0)); });
    view.reset();
    other.join();
  }
}

TEST_F(PelmoraViewTest, resolvesLabelsToTheirColours) {
  fakes.workspace.labels = {"Red", "Blue"};
  fakes.workspace.colors = {{1, 0, 0, 1}, {0, 0, 1, 1}};
  makeView();
  EXPECT_EQ(view->colorOfLabel("Blue"), (Color{0, 0, 1, 1}));
  EXPECT_EQ(view->colorOfLabel("blue"), std::nullopt);
}

TEST_F(PelmoraViewTest, labelsWithoutAsManyColoursHaveNone) {
  fakes.workspace.labels = {"Red", "Blue"};
  fakes.workspace.colors = {{1, 0, 0, 1}};
  makeView();
  EXPECT_EQ(view->colorOfLabel("Red"), std::nullopt);
}

TEST_F(PelmoraViewTest, seedsTheGeneratorWithTheWholeSecondsOfItsMaking) {
  fakes.clock.setNow({817387200.75});
  makeView();
  const long drawn = random();
  srandom(817387200);
  EXPECT_EQ(drawn, random());
}

TEST_F(PelmoraViewTest, seedsWithTheSecondsCutTo32Bits) {
  fakes.clock.setNow({4294967296.0 + 7});
  makeView();
  const long drawn = random();
  srandom(7);
  EXPECT_EQ(drawn, random());
}

TEST_F(PelmoraViewTest, theEndOfTheSaverStopsEveryView) {
  addPictures(1);
  startView();
  fakes.distributedNotifications.post(
      {.name = "com.apple.screensaver.didstop", .object = {}, .userInfo = {}});
  EXPECT_FALSE(view->isAnimating());
  EXPECT_EQ(fakes.log.count("Pelmora: screensaverDidStop"), 1U);
  EXPECT_TRUE(view->sourceList()->sources()->entries().empty());
}

TEST_F(PelmoraViewTest, removalFromItsWindowDoesTheStopWorkToo) {
  startView();
  view->viewWillMoveToWindow(nullptr);
  EXPECT_EQ(fakes.log.count("Pelmora: View being removed from window for screen 1"), 1U);
  EXPECT_TRUE(view->sourceList()->sources()->entries().empty());
  view->viewDidMoveToWindow();
  EXPECT_EQ(fakes.log.count("Pelmora: View was removed from window for screen 1"), 1U);
}

TEST_F(PelmoraViewTest, stoppingAgainAndAgainIsHarmless) {
  addPictures(2);
  startView();
  view->stopAnimation();
  view->viewWillMoveToWindow(nullptr);
  view->viewDidMoveToWindow();
  view->stopAnimation();
  EXPECT_EQ(fakes.log.count("Pelmora: Saving folder cache."), 1U);
}

TEST_F(PelmoraViewTest, usesTheStoredFilterFromTheStartOn) {
  fakes.preferences.setObject("FilterPredicate", archiveOf("kMDItemFSName CONTAINS[cd] 'beach'"));
  startView();
  ASSERT_EQ(fakes.metadata.queryCount(), 1);
  EXPECT_EQ(fakes.metadata.lastQuery()->predicate(),
            parsePredicate("kMDItemFSName CONTAINS[cd] 'beach'").value());
  EXPECT_TRUE(view->sourceList()->queer());
}

TEST_F(PelmoraViewTest, hasNoFilterForAPreferenceThatIsNoData) {
  fakes.preferences.setObject("FilterPredicate", "kMDItemFSName CONTAINS 'beach'");
  startView();
  EXPECT_EQ(fakes.metadata.queryCount(), 0);
}

TEST_F(PelmoraViewTest, endsTheFilterForAnArchiveThatCannotBeRead) {
  fakes.preferences.setObject("FilterPredicate", archiveOf("kMDItemFSName CONTAINS 'beach'"));
  startView();
  fakes.preferences.setObject("FilterPredicate", plist::Bytes{1, 2, 3});
  view->startAnimation();
  EXPECT_EQ(view->sourceList()->queer(), nullptr);
  EXPECT_EQ(countStarting(fakes.log, "Pelmora: The stored filter cannot be read: "), 1);
}

TEST_F(PelmoraViewTest, goesOnWithoutAFilterThatNoEditorMakes) {
  fakes.preferences.setObject("FilterPredicate", archiveOf("kMDItemPixelHeight > 1000"));
  startView();
  EXPECT_EQ(view->sourceList()->queer(), nullptr);
  EXPECT_EQ(countStarting(fakes.log,
                          "Pelmora: The stored filter is not used: NSComparisonPredicate(Walker): "
                          "predicateOperatorType 2 not handled"),
            1);
  EXPECT_EQ(countStarting(fakes.log, "Pelmora: Created cache file: "), 1);
}

TEST_F(PelmoraViewTest, drawsItsBackgroundBlack) {
  makeView();
  render::LayerContext context;
  view->drawLayer(view->layer(), context);
  ASSERT_EQ(context.fills().size(), 1U);
  EXPECT_EQ(context.fills()[0].rect, (Rect{{0, 0}, {1920, 1080}}));
  EXPECT_EQ(context.fills()[0].color, (Color{0, 0, 0, 1}));
}

TEST_F(PelmoraViewTest, tellsWhetherAFolderHoldsAnItem) {
  addPictures(1);
  makeView();
  EXPECT_TRUE(view->folder(pictures, "0.jpg"));
  EXPECT_FALSE(view->folder(pictures, "1.jpg"));
}

TEST_F(PelmoraViewTest, countsNoImages) { EXPECT_FALSE(makeView().logFrequencies()); }

}  // namespace pelmora::view
