#include "nowplaying/PMiTunesTrack.h"

#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"
#include "render/LayerTree.h"
#include "render/Snapshot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>

namespace pelmora::nowplaying {

namespace {

using platform::ScriptRecord;
using testing::ElementsAre;

constexpr Rect kScreen{{0, 0}, {800, 600}};

class Owner : public TrackOwner {
 public:
  explicit Owner(const platform::Services& services) : _services(services) {
    shared->setBounds(kScreen);
  }
  [[nodiscard]] Rect frame() const override { return theFrame; }
  [[nodiscard]] bool isPreview() const override { return preview; }
  [[nodiscard]] render::Layer* layer() const override { return shared.get(); }
  [[nodiscard]] const platform::Services& services() const override { return _services; }

  Rect theFrame = kScreen;
  bool preview = false;
  std::shared_ptr<render::Layer> shared = std::make_shared<render::Layer>();

 private:
  const platform::Services& _services;
};

class PMiTunesTrackTest : public testing::Test {
 protected:
  PMiTunesTrackTest() {
    resources.write("GetCurrentTrackInfo-Music.txt", "ask");
    fakes.runningApplications.applications = {{"com.apple.Music"}};
    services.resourceFolder = resources.path();
    srandom(7);
  }

  void post(plist::Dictionary info) {
    fakes.distributedNotifications.post({"com.apple.iTunes.playerInfo", {}, std::move(info)});
  }
  static std::string textOf(const PMiTunesTrack& track) {
    return track.textLayer()->string().plainText();
  }
  static Point origin(const PMiTunesTrack& track) { return track.baseLayer()->position(); }
  /// Puts a label of 100 x 50 there, which then moves by `delta`.
  static void place(PMiTunesTrack& track, const Point& at, const Point& delta) {
    track.setTrackName("a");
    track.baseLayer()->setBounds({{-8, -2}, {100, 50}});
    track.baseLayer()->setPosition(at);
    track.setFlyDelta(delta);
  }

  platform::TemporaryFolder resources;
  platform::FakeServices fakes;
  platform::Services services = fakes.services();
  Owner owner{services};
};

/// Shows what it is given at once.
class Screen : public render::Presenter {
 public:
  explicit Screen(platform::SteppedClock& clock) : _clock(clock) {}
  void submit(std::shared_ptr<const render::Snapshot> snapshot) override {
    _shown = std::move(snapshot);
    _shown->beginAnimations(_clock.mediaTime());
  }
  /// Whether another frame is wanted now.
  [[nodiscard]] bool moves() const { return _shown->movesAt(_clock.mediaTime()); }

 private:
  platform::SteppedClock& _clock;
  std::shared_ptr<const render::Snapshot> _shown;
};

void expectNoTrack(const PMiTunesTrack& track) {
  EXPECT_EQ(track.trackName(), std::nullopt);
  EXPECT_EQ(track.artist(), std::nullopt);
  EXPECT_EQ(track.album(), std::nullopt);
  EXPECT_EQ(track.rating(), 0);
}

}  // namespace

// What is playing ---------------------------------------------------------------------------------

TEST_F(PMiTunesTrackTest, takesTheTrackOfANotification) {
  const PMiTunesTrack track(owner, 0);
  post({{"Name", "Song"}, {"Artist", "Singer"}, {"Album", "Record"}, {"Rating", 80}});
  EXPECT_EQ(track.trackName(), "Song");
  EXPECT_EQ(track.artist(), "Singer");
  EXPECT_EQ(track.album(), "Record");
  EXPECT_EQ(track.rating(), 80);
  EXPECT_EQ(textOf(track), "Song\nSinger\nRecord");
  EXPECT_TRUE(fakes.scripts.executed.empty());
}

TEST_F(PMiTunesTrackTest, showsATrackWhateverThePlayersStateAndNoneWithoutAName) {
  const PMiTunesTrack track(owner, 0);
  post({{"Name", "Song"}, {"Player State", "Stopped"}, {"Rating", 20}});
  EXPECT_EQ(textOf(track), "Song");
  post({{"Artist", "Singer"}, {"Rating", 60}});
  expectNoTrack(track);  // as the player, asked then, has none either
  EXPECT_EQ(textOf(track), "");
  EXPECT_EQ(track.baseLayer()->bounds(), Rect{});
  EXPECT_EQ(track.textLayer()->bounds(), Rect{});
}

TEST_F(PMiTunesTrackTest, hasNoRatingWhereTheNotificationHasNone) {
  const PMiTunesTrack track(owner, 0);
  post({{"Name", "Song"}, {"Rating", 80}});
  post({{"Name", "Song"}});
  EXPECT_EQ(track.rating(), 0.0);
}

TEST_F(PMiTunesTrackTest, takesWhatIsNoTextForNoText) {
  const PMiTunesTrack track(owner, 0);
  post({{"Name", "Song"}, {"Artist", 7}, {"Album", plist::Array{"x"}}, {"Rating", "x"}});
  EXPECT_EQ(textOf(track), "Song");
  EXPECT_EQ(track.rating(), 0.0);
}

TEST_F(PMiTunesTrackTest, hearsNoMoreOnceItIsGone) {
  { const PMiTunesTrack track(owner, 0); }
  post({{"Name", "Song"}});
  EXPECT_EQ(owner.shared->sublayers().size(), 1U);  // its layers stay
}

TEST_F(PMiTunesTrackTest, asksThePlayerWhenItKnowsNoTrack) {
  fakes.scripts.result =
      ScriptRecord{{"pnam", "Song"}, {"pArt", "Singer"}, {"pAlb", "Record"}, {"pRte", 40.0}};
  PMiTunesTrack track(owner, 0);
  track.fillOutLayers();
  EXPECT_EQ(textOf(track), "Song\nSinger\nRecord");
  EXPECT_EQ(track.rating(), 40);
  EXPECT_FALSE(track.isAskingiTunes());
  track.fillOutLayers();
  EXPECT_EQ(fakes.scripts.executed.size(), 1U);
}

TEST_F(PMiTunesTrackTest, hasNoTrackForResultsThatAreNoRecord) {
  PMiTunesTrack track(owner, 0);
  for (const platform::ScriptResult& result :
       {platform::ScriptResult(), platform::ScriptResult("Song"), platform::ScriptResult(1.0),
        platform::ScriptResult(platform::ScriptList{"Song", "Singer"})}) {
    track.setTrackName("before");
    track.setArtist("before");
    track.setAlbum("before");
    track.setRating(1);
    fakes.scripts.result = result;
    track.askiTunesForCurrentTrackInfo();
    expectNoTrack(track);
    EXPECT_FALSE(track.isAskingiTunes());
  }
}

TEST_F(PMiTunesTrackTest, takesAbsentFieldsOfARecordForNone) {
  PMiTunesTrack track(owner, 0);
  track.setArtist("before");
  fakes.scripts.result = ScriptRecord{{"pnam", "Song"}};
  track.askiTunesForCurrentTrackInfo();
  EXPECT_EQ(track.trackName(), "Song");
  EXPECT_EQ(track.artist(), std::nullopt);
  EXPECT_EQ(track.rating(), 0);
}

TEST_F(PMiTunesTrackTest, hasNoTrackWithoutAPlayerOrAScript) {
  fakes.scripts.result = ScriptRecord{{"pnam", "Song"}};
  PMiTunesTrack track(owner, 0);
  track.setTrackName("before");
  fakes.runningApplications.applications = {{"com.apple.iTunes"}};
  track.askiTunesForCurrentTrackInfo();
  expectNoTrack(track);
  fakes.runningApplications.applications = {{"com.apple.Music"}};
  services.resourceFolder = FilePath("/nonexistent");
  track.setTrackName("before");
  track.askiTunesForCurrentTrackInfo();
  expectNoTrack(track);
  EXPECT_FALSE(track.isAskingiTunes());
  EXPECT_TRUE(fakes.scripts.executed.empty());
}

TEST_F(PMiTunesTrackTest, changesNothingWhenAskedWhileItAsks) {
  PMiTunesTrack track(owner, 0);
  track.setTrackName("before");
  track.setIsAskingiTunes(true);
  track.askiTunesForCurrentTrackInfo();
  EXPECT_EQ(track.trackName(), "before");
  EXPECT_TRUE(track.isAskingiTunes());
  EXPECT_TRUE(fakes.scripts.executed.empty());
}

// The label ---------------------------------------------------------------------------------------

TEST_F(PMiTunesTrackTest, isAnInvisibleOrangeLabelAboveTheCardsAtFirst) {
  const PMiTunesTrack track(owner, 0);
  ASSERT_THAT(owner.shared->sublayers(), ElementsAre(track.baseLayer()));
  const render::Layer& base = *track.baseLayer();
  EXPECT_EQ(base.role(), "track");
  EXPECT_EQ(base.opacity(), 0);
  EXPECT_EQ(base.cornerRadius(), 4);
  EXPECT_EQ(base.zPosition(), 3.4028234663852886e38);
  EXPECT_EQ(base.anchorPoint(), (Point{0, 0}));
  EXPECT_EQ(base.bounds(), (Rect{{-4, -4}, {8, 8}}));
  EXPECT_EQ(base.scale(), 1);
  EXPECT_EQ(base.backgroundColor(), (Color{1, 0.5, 0, 1}));
  ASSERT_THAT(base.sublayers(), ElementsAre(track.textLayer()));
  EXPECT_EQ(track.textLayer()->role(), "text");
  EXPECT_EQ(track.textLayer()->position(), (Point{0, 0}));
  EXPECT_EQ(track.textLayer()->anchorPoint(), (Point{0, 0}));
  EXPECT_EQ(track.textLayer()->alignment(), render::TextAlignment::center);
}

TEST_F(PMiTunesTrackTest, liesSomewhereInTheFrameAtFirst) {
  owner.theFrame = {{1000, 500}, {300, 200}};
  for (int i = 0; i < 50; ++i) {
    const PMiTunesTrack track(owner, 0);
    EXPECT_EQ(track.ownerViewFrame(), owner.theFrame);
    EXPECT_GE(origin(track).x, 1000);
    EXPECT_LE(origin(track).x, 1292);
    EXPECT_GE(origin(track).y, 500);
    EXPECT_LE(origin(track).y, 692);
  }
}

TEST_F(PMiTunesTrackTest, isAQuarterOfItsSizeInThePreview) {
  owner.preview = true;
  const PMiTunesTrack track(owner, 2);
  EXPECT_EQ(track.baseLayer()->scale(), 0.25);
}

TEST_F(PMiTunesTrackTest, showsTheTitleBoldAndALineEachOfWhatElseIsKnown) {
  PMiTunesTrack track(owner, 0);
  track.setTrackName("Song");
  track.fillOutLayers();
  const double oneLine = track.baseLayer()->bounds().size.height;
  ASSERT_EQ(track.textLayer()->string().runs.size(), 1U);
  EXPECT_EQ(track.textLayer()->string().runs[0].font, (render::TextFont{"", 24, true}));
  EXPECT_EQ(track.textLayer()->string().runs[0].color, (Color{1, 1, 1, 1}));
  track.setArtist("Singer");
  track.fillOutLayers();
  EXPECT_EQ(textOf(track), "Song\nSinger");
  EXPECT_EQ(track.textLayer()->string().runs[1].font, (render::TextFont{"", 24, false}));
  EXPECT_GT(track.baseLayer()->bounds().size.height, 1.5 * oneLine);
  track.setArtist(std::nullopt);
  track.setAlbum("");
  track.fillOutLayers();
  EXPECT_EQ(textOf(track), "Song\n");
}

TEST_F(PMiTunesTrackTest, hasRoomAroundItsText) {
  PMiTunesTrack track(owner, 0);
  track.setTrackName("Song");
  track.fillOutLayers();
  const Rect text = track.textLayer()->bounds();
  EXPECT_GT(text.size.width, 0);
  EXPECT_EQ(text.origin, (Point{0, 0}));
  EXPECT_EQ(track.baseLayer()->bounds(),
            (Rect{{-8, -2}, {text.size.width + 16, text.size.height + 4}}));
}

TEST_F(PMiTunesTrackTest, fadesInAndOutOnceAtANewPlaceForEachNotification) {
  const PMiTunesTrack track(owner, 1);
  render::LayerTree tree(fakes.clock, fakes.scheduler, owner.shared);
  tree.commit();
  Point last = origin(track);
  for (int i = 0; i < 3; ++i) {
    post({{"Name", "Song"}});
    EXPECT_EQ(track.baseLayer()->opacity(), 0);
    EXPECT_THAT(track.baseLayer()->animationKeys(), ElementsAre("TheFadeInAndOut"));
    EXPECT_NE(origin(track), last);
    last = origin(track);
    EXPECT_GE(last.x, 0);
    EXPECT_LE(last.x + track.baseLayer()->bounds().size.width, 800);
    EXPECT_GE(last.y, 0);
    EXPECT_LE(last.y + track.baseLayer()->bounds().size.height, 600);
    tree.commit();
    fakes.scheduler.advanceBy(11);
    EXPECT_TRUE(track.baseLayer()->animationKeys().empty());
    EXPECT_EQ(origin(track), last);
  }
}

TEST_F(PMiTunesTrackTest, staysWhereItIsAndIsPulledInWhereItLeavesTheScreen) {
  for (const std::int64_t type : {0, 2, 3, -1}) {
    PMiTunesTrack track(owner, type);
    track.setTrackName("Song");
    track.fillOutLayers();
    EXPECT_EQ(track.baseLayer()->opacity(), static_cast<double>(0.8F));
    EXPECT_TRUE(track.baseLayer()->animationKeys().empty());
    const Size size = track.baseLayer()->bounds().size;
    const auto placed = [&](const Point& at) {
      track.baseLayer()->setPosition(at);
      track.fillOutLayers();
      return origin(track);
    };
    EXPECT_EQ(placed({100, 200}), (Point{100, 200}));
    EXPECT_EQ(placed({-5, 200}), (Point{0, 200}));
    EXPECT_EQ(placed({790, 590}), (Point{800 - size.width, 600 - size.height}));
    EXPECT_EQ(placed({300, -1}), (Point{300, 0}));
  }
}

TEST_F(PMiTunesTrackTest, keepsOpacityAndPlaceWhenItBecomesEmpty) {
  PMiTunesTrack track(owner, 0);
  post({{"Name", "Song"}});
  const Point at = origin(track);
  post({});
  EXPECT_EQ(track.baseLayer()->opacity(), static_cast<double>(0.8F));
  EXPECT_EQ(origin(track), at);
}

// Flight ------------------------------------------------------------------------------------------

TEST_F(PMiTunesTrackTest, fliesAtNoLessThanHalfAPointAStepInAnyDirection) {
  bool up = false;
  bool down = false;
  for (int i = 0; i < 100; ++i) {
    const Point delta = PMiTunesTrack(owner, 2).flyDelta();
    for (const double step : {delta.x, delta.y}) {
      EXPECT_GE(std::abs(step), 0.5);
      EXPECT_LE(std::abs(step), 5);
    }
    (delta.y > 0 ? up : down) = true;
  }
  EXPECT_TRUE(up && down);
  EXPECT_EQ(PMiTunesTrack(owner, 1).flyDelta(), (Point{0, 0}));
}

TEST_F(PMiTunesTrackTest, movesByAStepAndGlidesThere) {
  PMiTunesTrack track(owner, 2);
  place(track, {100, 200}, {3, -2});
  track.flyAround();
  EXPECT_EQ(origin(track), (Point{103, 198}));
  EXPECT_THAT(track.baseLayer()->animationKeys(), ElementsAre("position"));
}

TEST_F(PMiTunesTrackTest, glidesNowhereElseWhenItIsPulledIn) {
  PMiTunesTrack track(owner, 2);
  place(track, {798, 200}, {3, -2});
  track.setFlyDelta({-3, -2});
  track.flyAround();
  track.fillOutLayers();
  EXPECT_TRUE(track.baseLayer()->animationKeys().empty());
  EXPECT_LE(origin(track).x + track.baseLayer()->bounds().size.width, 800);
}

TEST_F(PMiTunesTrackTest, doesNotMoveWithoutATrack) {
  PMiTunesTrack track(owner, 2);
  place(track, {100, 200}, {3, -2});
  track.setTrackName(std::nullopt);
  track.flyAround();
  EXPECT_EQ(origin(track), (Point{100, 200}));
}

TEST_F(PMiTunesTrackTest, turnsBackAtTheEdgesBeforeItCrossesThem) {
  PMiTunesTrack track(owner, 2);
  place(track, {697.5, 1.5}, {3, -2});
  track.flyAround();
  EXPECT_EQ(track.flyDelta(), (Point{-3, 2}));
  EXPECT_EQ(origin(track), (Point{694.5, 3.5}));
  place(track, {2, 549}, {-3, 2});
  track.flyAround();
  EXPECT_EQ(track.flyDelta(), (Point{3, -2}));
}

TEST_F(PMiTunesTrackTest, goesOnWhereAStepJustReachesTheEdge) {
  PMiTunesTrack track(owner, 2);
  place(track, {697, 2}, {3, -2});
  track.flyAround();
  EXPECT_EQ(track.flyDelta(), (Point{3, -2}));
  EXPECT_EQ(origin(track), (Point{700, 0}));
}

TEST_F(PMiTunesTrackTest, tremblesInPlaceWhereItIsWiderThanTheFrame) {
  owner.theFrame = {{0, 0}, {90, 600}};
  PMiTunesTrack track(owner, 2);
  place(track, {-5, 100}, {3, 1});
  for (const double expected : {-3.0, 3.0, -3.0, 3.0}) {
    track.flyAround();
    EXPECT_EQ(track.flyDelta().x, expected);
    EXPECT_EQ(track.flyDelta().y, 1);
  }
}

TEST_F(PMiTunesTrackTest, fliesInTheFrameThatTheViewHadAtFirstOffsetByItsOrigin) {
  owner.theFrame = {{1000, 0}, {300, 600}};
  PMiTunesTrack track(owner, 2);
  owner.theFrame = kScreen;
  place(track, {1198, 100}, {3, 1});
  track.flyAround();
  EXPECT_EQ(track.flyDelta(), (Point{-3, 1}));
  place(track, {500, 100}, {-3, 1});
  track.flyAround();
  EXPECT_EQ(track.flyDelta(), (Point{3, 1}));
}

TEST_F(PMiTunesTrackTest, fliesWithItsWholeSizeInThePreview) {
  owner.preview = true;
  PMiTunesTrack track(owner, 2);
  place(track, {697.5, 100}, {3, 1});
  track.flyAround();
  EXPECT_EQ(track.flyDelta().x, -3);
}

// At rest -----------------------------------------------------------------------------------------

TEST_F(PMiTunesTrackTest, wantsNoFramesButWhileItFadesOrGlides) {
  Screen screen(fakes.clock);
  render::LayerTree tree(fakes.clock, fakes.scheduler, owner.shared);
  tree.setPresenter(&screen);
  const auto movesAfter = [&](double seconds) {
    tree.commit();
    fakes.scheduler.advanceBy(seconds);
    tree.commit();
    return screen.moves();
  };
  for (const std::int64_t type : {0, 1, 2}) {
    PMiTunesTrack track(owner, type);
    track.setTrackName("Song");
    track.fillOutLayers();
    EXPECT_EQ(movesAfter(1), type == 1);
    EXPECT_FALSE(movesAfter(9.1));
    if (type != 2) continue;
    track.flyAround();
    EXPECT_TRUE(movesAfter(0.2));
    EXPECT_FALSE(movesAfter(0.1));
  }
}

}  // namespace pelmora::nowplaying
