#include "host/SaverSession.h"

#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/OperationQueue.h"
#include "render/LayerTree.h"
#include "render/Snapshot.h"
#include "shared/Random.h"
#include "sources/PMSourceList.h"
#include "view/PelmoraView.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pelmora::host {

namespace {

/// Shows at once whatever is submitted.
class CountingPresenter : public render::Presenter {
 public:
  explicit CountingPresenter(const platform::Clock& clock) : _clock(clock) {}
  void submit(std::shared_ptr<const render::Snapshot> snapshot) override {
    snapshot->beginAnimations(_clock.mediaTime());
    last = std::move(snapshot);
    ++submitted;
  }

  std::shared_ptr<const render::Snapshot> last;
  [[nodiscard]] bool isHidden() const override { return isOutOfSight; }

  int submitted = 0;
  bool isOutOfSight = false;

 private:
  const platform::Clock& _clock;
};

class FakePower : public DisplayPower {
 public:
  [[nodiscard]] bool isAwake() override {
    ++asked;
    return isOn;
  }
  bool isOn = true;
  int asked = 0;
};

class SaverSessionTest : public testing::Test {
 protected:
  SaverSessionTest() {
    fakes.userFolders.cachesFolders = {folder.mkdir("caches")};
    fakes.userFolders.picturesFolders = {folder.mkdir("pictures")};
    fakes.preferences.setObject("UsePolaroid", 0);
    fakes.displays.displays.push_back(
        platform::FakeDisplays::display(2, {{1920, 56}, {1280, 1024}}, 2));
    fakes.scheduler.setEndOfTurn([this] { session.commit(); });
    for (int i = 0; i < 5; ++i) folder.write("pictures/" + std::to_string(i) + ".jpg", "x");
  }

  void start() {
    std::vector<ViewPlace> places;
    for (const platform::Display& display : fakes.displays.displays) {
      presenters.push_back(std::make_unique<CountingPresenter>(fakes.clock));
      places.push_back({.frame = display.frame,
                        .scale = display.scale,
                        .display = display,
                        .presenter = presenters.back().get()});
    }
    session.start(places);
    session.view(0).sourceList()->enumQueue().waitUntilAllOperationsAreFinished();
  }

  /// A place on a display, which is connected if it is new.
  ViewPlace place(std::uint64_t id, const Rect& frame) {
    auto& displays = fakes.displays.displays;
    const auto display = platform::FakeDisplays::display(id, frame);
    if (std::none_of(displays.begin(), displays.end(),
                     [id](const auto& known) { return known.id == id; })) {
      displays.push_back(display);
    }
    return {.frame = frame, .display = display};
  }

  platform::TemporaryFolder folder;
  platform::FakeServices fakes;
  const platform::Services services = fakes.services();
  std::vector<std::unique_ptr<CountingPresenter>> presenters;
  FakePower power;
  SaverSession session{services, &power};
};

}  // namespace

TEST_F(SaverSessionTest, givesEveryDisplayAViewOfItsOwn) {
  start();
  ASSERT_EQ(session.viewCount(), 2U);
  EXPECT_EQ(session.view(0).screenIndex(), 1U);
  EXPECT_EQ(session.view(1).screenIndex(), 2U);
  EXPECT_EQ(session.view(1).frame(), (Rect{{0, 0}, {1280, 1024}}));
  EXPECT_EQ(session.view(1).backingScaleFactor(), 2);
}

TEST_F(SaverSessionTest, drivesAllViewsEveryHalfSecond) {
  start();
  session.startFrames();
  EXPECT_EQ(session.view(0).images().size(), 1U);
  EXPECT_EQ(session.view(1).images().size(), 1U);
  fakes.scheduler.advanceTo(4.0);
  EXPECT_EQ(session.view(0).images().size(), 1U);
  fakes.scheduler.advanceTo(4.5);
  EXPECT_EQ(session.view(0).images().size(), 2U);
  EXPECT_EQ(session.view(1).images().size(), 2U);
}

TEST_F(SaverSessionTest, givesNoFramesToAViewThatHasStopped) {
  start();
  session.startFrames();
  session.view(0).stopAnimation();
  const double lastChange = session.view(0).lastImageChangeTime();
  fakes.scheduler.advanceTo(20);
  EXPECT_EQ(session.view(0).lastImageChangeTime(), lastChange);
  EXPECT_GT(session.view(1).lastImageChangeTime(), lastChange);
}

TEST_F(SaverSessionTest, showsNothingNewWhileTheDisplaysAreOff) {
  start();
  session.startFrames();
  fakes.scheduler.advanceTo(2);
  power.isOn = false;
  const int submitted = presenters[0]->submitted;
  fakes.scheduler.advanceTo(3600.2);
  EXPECT_EQ(session.view(0).images().size(), 1U);
  EXPECT_EQ(presenters[0]->submitted, submitted);
  // At the next frame, and then in the usual time.
  power.isOn = true;
  fakes.scheduler.advanceTo(3600.5);
  EXPECT_EQ(session.view(0).images().size(), 2U);
  EXPECT_EQ(session.view(1).images().size(), 2U);
  fakes.scheduler.advanceTo(3604.5);
  EXPECT_EQ(session.view(0).images().size(), 2U);
  fakes.scheduler.advanceTo(3605);
  EXPECT_EQ(session.view(0).images().size(), 3U);
}

TEST_F(SaverSessionTest, asksOfTheDisplaysOnlyWhenThereIsSomethingToShow) {
  start();
  session.startFrames();
  EXPECT_EQ(power.asked, 1);
  fakes.scheduler.advanceTo(4.0);
  EXPECT_EQ(power.asked, 1);
  fakes.scheduler.advanceTo(4.5);
  EXPECT_EQ(power.asked, 2);
}

TEST_F(SaverSessionTest, showsNothingNewInAWindowThatNobodySees) {
  start();
  session.startFrames();
  presenters[1]->isOutOfSight = true;
  fakes.scheduler.advanceTo(20);
  EXPECT_GT(session.view(0).images().size(), 3U);
  EXPECT_EQ(session.view(1).images().size(), 1U);
  presenters[1]->isOutOfSight = false;
  fakes.scheduler.advanceTo(20.5);
  EXPECT_EQ(session.view(1).images().size(), 2U);
}

TEST_F(SaverSessionTest, endsTheWorkOfEveryViewAsOftenAsItIsTold) {
  start();
  session.startFrames();
  for (int i = 0; i < 3; ++i) {
    fakes.distributedNotifications.post(
        {.name = "com.apple.screensaver.didstop", .object = {}, .userInfo = {}});
  }
  EXPECT_FALSE(session.view(0).isAnimating());
  EXPECT_FALSE(session.view(1).isAnimating());
  EXPECT_EQ(fakes.log.count("Pelmora: screensaverDidStop"), 6U);
  EXPECT_EQ(fakes.log.countContaining("Pelmora: Stopping animation for screen 1"), 3U);
  EXPECT_EQ(fakes.log.countContaining("Pelmora: Stopping animation for screen 2"), 3U);
  EXPECT_EQ(fakes.log.count("Pelmora: Saving folder cache."), 1U);
  EXPECT_EQ(session.viewCount(), 2U);
}

TEST_F(SaverSessionTest, drawsNothingAnewWhileThereIsNoPicture) {
  fakes.images.failAll();
  start();
  session.startFrames();
  session.commit();
  const int submitted = presenters[0]->submitted;
  fakes.scheduler.advanceTo(20);
  EXPECT_EQ(presenters[0]->submitted, submitted);
}

TEST_F(SaverSessionTest, commitsWhatATurnChangedOnce) {
  start();
  session.startFrames();
  session.commit();
  EXPECT_EQ(presenters[0]->submitted, 1);
  ASSERT_EQ(presenters[0]->last->root.sublayers.size(), 1U);
  fakes.scheduler.advanceTo(3.9);  // the entrance ends, and nothing else
  const int submitted = presenters[0]->submitted;
  fakes.scheduler.advanceTo(4.4);
  EXPECT_EQ(presenters[0]->submitted, submitted);
}

TEST_F(SaverSessionTest, theFirstFolderFoundBringsAFrameForward) {
  session.start(
      {{.frame = fakes.displays.displays[0].frame, .display = fakes.displays.displays[0]}});
  session.view(0).sourceList()->cancelOperations();
  session.view(0).sourceList()->enumQueue().waitUntilAllOperationsAreFinished();
  session.view(0).sourceList()->clearAll();
  session.startFrames();
  EXPECT_TRUE(session.view(0).images().empty());
  session.view(0).sourceList()->unloadSources();
  session.view(0).sourceList()->loadSourcesFromPrefs(fakes.preferences, true, false);
  session.view(0).sourceList()->enumQueue().waitUntilAllOperationsAreFinished();
  fakes.scheduler.runPosted();  // no time has gone by
  EXPECT_EQ(session.view(0).images().size(), 1U);
}

TEST_F(SaverSessionTest, followsAWindowThatChangesItsSize) {
  start();
  session.resize(0, {800, 600}, 1.5);
  EXPECT_EQ(session.view(0).frame(), (Rect{{0, 0}, {800, 600}}));
  EXPECT_EQ(session.view(0).backingScaleFactor(), 1.5);
}

TEST_F(SaverSessionTest, showsADisplayThatComesAtOnce) {
  start();
  session.startFrames();
  fakes.scheduler.advanceTo(3);
  const std::size_t number = session.addView(place(3, {{0, 1080}, {800, 600}}));
  EXPECT_EQ(number, 2U);
  EXPECT_EQ(session.view(number).screenIndex(), 3U);
  EXPECT_EQ(session.view(number).images().size(), 1U);
  EXPECT_EQ(session.view(0).images().size(), 1U);  // undisturbed
  fakes.scheduler.advanceTo(4.5);
  EXPECT_EQ(session.view(0).images().size(), 2U);
  EXPECT_EQ(session.view(number).images().size(), 1U);
  fakes.scheduler.advanceTo(7.5);
  EXPECT_EQ(session.view(number).images().size(), 2U);
}

TEST_F(SaverSessionTest, showsADisplayThatComesWhereThereWasNone) {
  fakes.displays.displays.clear();
  session.start({});
  session.startFrames();
  session.addView(place(7, {{0, 0}, {800, 600}}));
  session.view(0).sourceList()->enumQueue().waitUntilAllOperationsAreFinished();
  fakes.scheduler.advanceTo(0.5);
  EXPECT_EQ(session.view(0).images().size(), 1U);
}

TEST_F(SaverSessionTest, goesOnWhenADisplayGoes) {
  start();
  session.startFrames();
  session.commit();
  const int submitted = presenters[0]->submitted;
  session.removeView(0);
  session.removeView(7);  // no such view
  EXPECT_EQ(session.viewCount(), 1U);
  fakes.scheduler.advanceTo(4.5);
  EXPECT_EQ(presenters[0]->submitted, submitted);  // never used again
  EXPECT_EQ(session.view(1).images().size(), 2U);
  EXPECT_EQ(fakes.log.count("Pelmora: Saving folder cache."), 0U);
  EXPECT_NE(session.view(1).sourceList()->getFolderAtIndex(0), nullptr);
}

TEST_F(SaverSessionTest, showsADisplayThatComesBackAsItWas) {
  start();
  session.startFrames();
  fakes.scheduler.advanceTo(4.5);
  session.removeView(1);
  fakes.scheduler.advanceTo(20);
  CountingPresenter presenter(fakes.clock);
  ViewPlace back = place(2, {{1920, 56}, {640, 480}});
  back.presenter = &presenter;
  const std::size_t number = session.addView(back);
  EXPECT_EQ(number, 2U);
  EXPECT_EQ(session.view(number).screenIndex(), 2U);
  EXPECT_EQ(session.view(number).frame(), (Rect{{0, 0}, {640, 480}}));
  EXPECT_EQ(session.view(number).images().size(), 3U);  // two and the one that is due
  session.commit();
  EXPECT_EQ(presenter.submitted, 1);
}

TEST_F(SaverSessionTest, stopsViewsThatSleepWhenTheRunEnds) {
  start();
  session.startFrames();
  session.removeView(0);
  session.removeView(1);
  EXPECT_EQ(fakes.log.countContaining("Pelmora: Stopping animation"), 0U);
  session.stop();
  EXPECT_EQ(fakes.log.countContaining("Pelmora: View was removed from window for screen "), 2U);
  EXPECT_EQ(fakes.log.count("Pelmora: Saving folder cache."), 1U);
}

TEST_F(SaverSessionTest, stopsTheViewThatSleepsLongestWhenTooManyDo) {
  start();
  for (std::uint64_t id = 10; id < 10 + SaverSession::kMostAsleep; ++id) {
    session.removeView(session.addView(place(id, {{0, 0}, {800, 600}})));
  }
  EXPECT_EQ(fakes.log.countContaining("Pelmora: View was removed from window for screen "), 0U);
  session.removeView(session.addView(place(20, {{0, 0}, {800, 600}})));
  EXPECT_EQ(fakes.log.countContaining("Pelmora: View was removed from window for screen 3"), 1U);
}

TEST_F(SaverSessionTest, endsWithTheStopSequenceOfEveryView) {
  start();
  session.startFrames();
  session.stop();
  EXPECT_EQ(fakes.log.countContaining("Pelmora: View was removed from window for screen "), 2U);
  EXPECT_EQ(fakes.log.count("Pelmora: Saving folder cache."), 1U);
  EXPECT_EQ(session.viewCount(), 0U);
  const std::size_t lines = fakes.log.lines().size();
  session.stop();
  fakes.scheduler.advanceTo(10);
  EXPECT_EQ(fakes.log.lines().size(), lines);
}

TEST_F(SaverSessionTest, leavesOutSoManyRandomNumbers) {
  const platform::Display& display = fakes.displays.displays[0];
  const auto firstDrawAfter = [&](unsigned skippedDraws) {
    SaverSession other(services);
    other.start({{.frame = display.frame, .display = display, .skippedDraws = skippedDraws}});
    const double first = randomDoubleBetween(0, 1);
    return std::pair(first, randomDoubleBetween(0, 1));
  };
  EXPECT_EQ(firstDrawAfter(1).first, firstDrawAfter(0).second);
}

}  // namespace pelmora::host
