#include "nowplaying/PMiTunesTrack.h"
#include "view/tests/ViewFixture.h"

namespace pelmora::view {

class TrackLabel : public ViewFixture {
 protected:
  TrackLabel() {
    fakes.preferences.setObject("ShowiTunesTrack", 1);
    addPictures(10);
  }

  void play(const char* name) {
    fakes.distributedNotifications.post({"com.apple.iTunes.playerInfo", {}, {{"Name", name}}});
  }
  /// The label's number among the layers of the view; cards are there, too.
  [[nodiscard]] std::size_t labels() const {
    std::size_t count = 0;
    for (const auto& layer : view->layer()->sublayers()) count += layer->role() == "track" ? 1 : 0;
    return count;
  }
};

TEST_F(TrackLabel, comesWithTheFirstCardAndOnlyWhereItIsWanted) {
  fakes.preferences.setObject("ShowiTunesTrack", 0);
  startView();
  frames(9);
  EXPECT_EQ(view->iTunesTrack(), nullptr);
  fakes.preferences.setObject("ShowiTunesTrack", 1);
  view->animateOneFrame();  // the second card
  ASSERT_NE(view->iTunesTrack(), nullptr);
  EXPECT_EQ(view->iTunesTrack()->iTunesType(), 1);
  EXPECT_EQ(labels(), 1U);
}

TEST_F(TrackLabel, waitsForACard) {
  fakes.images.failAll();
  startView();
  frames(3);
  EXPECT_EQ(view->iTunesTrack(), nullptr);
}

TEST_F(TrackLabel, isOnThePreviewAndOnTheFirstScreenAlone) {
  const Rect right{{1920, 0}, {1280, 1024}};
  fakes.displays.displays.push_back(platform::FakeDisplays::display(2, right));
  platform::FakeWindow second{fakes.displays.displays.back()};
  const auto hasLabel = [this](platform::Window& in, const Rect& frame, bool isPreview) {
    endView();
    view = std::make_unique<PelmoraView>(services, frame, isPreview);
    view->viewWillMoveToWindow(&in);
    view->viewDidMoveToWindow();
    view->startAnimation();
    waitForWalk();
    this->frame();
    EXPECT_EQ(view->images().size(), 1U);
    return view->iTunesTrack() != nullptr;
  };
  EXPECT_TRUE(hasLabel(window, fakes.displays.displays.front().frame, false));
  EXPECT_TRUE(hasLabel(window, {{0, 0}, {400, 300}}, true));
  EXPECT_EQ(view->iTunesTrack()->baseLayer()->scale(), 0.25);
  EXPECT_FALSE(hasLabel(second, right, false));
}

TEST_F(TrackLabel, asksThePlayerAtOnce) {
  fakes.runningApplications.applications = {{"com.apple.Music"}};
  services.resourceFolder = folder.path();
  folder.write("GetCurrentTrackInfo-Music.txt", "ask");
  fakes.scripts.result = platform::ScriptRecord{{"pnam", "Song"}};
  startView();
  frame();
  EXPECT_EQ(view->iTunesTrack()->trackName(), "Song");
}

TEST_F(TrackLabel, staysWhenThePreferenceIsSwitchedOff) {
  startView();
  frame();
  const auto* label = view->iTunesTrack();
  fakes.preferences.setObject("ShowiTunesTrack", 0);
  frames(20);
  EXPECT_EQ(view->iTunesTrack(), label);
  EXPECT_EQ(labels(), 1U);
}

TEST_F(TrackLabel, fliesAtEveryFrameInTheModeForThatAlone) {
  for (const int type : {2, 1, 0}) {
    endView();
    fakes.preferences.setObject("iTunesTrackType", type);
    startView();
    frame();
    play("Song");
    const auto place = [this] { return view->iTunesTrack()->baseLayer()->position(); };
    const Point first = place();
    frame();
    const Point second = place();
    frame();
    if (type == 2) {
      EXPECT_NE(second, first);
      EXPECT_NE(place(), second);
    } else {
      EXPECT_EQ(place(), first);
    }
  }
}

}  // namespace pelmora::view
