#include "view/tests/ViewFixture.h"

#include "render/Layer.h"
#include "view/DisplayListFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>

namespace pelmora::view {

namespace {

std::u16string contentsOf(const FilePath& path) {
  std::ifstream file(path.bytes(), std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  std::u16string text(bytes.size() / 2, u'\0');
  bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * 2);
  return text;
}

}  // namespace

class AnimationCycle : public ViewFixture {
 protected:
  [[nodiscard]] FilePath displayList(const std::string& name = "Screen 1 Log.txt") const {
    return fakes.userFolders.cachesFolders.front() / "Pelmora" / name;
  }
};

TEST_F(AnimationCycle, theFirstFrameAddsACardAndTheNinthAfterItTheNext) {
  addPictures(10);
  startView();
  frame();
  EXPECT_EQ(view->images().size(), 1U);
  frames(8);  // 0.5 s to 4.0 s after: not more than the delay
  EXPECT_EQ(view->images().size(), 1U);
  frame();  // 4.5 s
  EXPECT_EQ(view->images().size(), 2U);
}

TEST_F(AnimationCycle, scalesTheLongerSideToThreeQuartersOfTheHeight) {
  addPictures(1);
  startView();
  const auto sizeFor = [this](PixelSize natural) {
    fakes.images.setDefaultSize(natural);
    EXPECT_TRUE(view->addNewImageToList());
    return view->images().back()->layer()->bounds().size;
  };
  EXPECT_EQ(sizeFor({3000, 2000}), (Size{810, 540}));
  EXPECT_EQ(sizeFor({1000, 3000}), (Size{270, 810}));
  EXPECT_EQ(sizeFor({1000, 1000}), (Size{810, 810}));
  EXPECT_EQ(sizeFor({400, 300}), (Size{810, 607.5}));
}

TEST_F(AnimationCycle, theSixthCardOfFiveRemovesTheFirst) {
  addPictures(20);
  startView();
  for (int i = 0; i < 5; ++i) view->addNewImageToList();
  const auto first = view->images().front();
  const FilePath second = view->images()[1]->url();
  view->addNewImageToList();
  EXPECT_EQ(view->images().size(), 5U);
  EXPECT_NE(view->images().front(), first);
  EXPECT_EQ(view->images().front()->url(), second);

  std::string expected;
  for (const auto& card : view->images()) expected += card->url().bytes() + "\r";
  EXPECT_EQ(contentsOf(displayList()), utf16WithByteOrderMark(expected));
}

TEST_F(AnimationCycle, aListLongerThanALoweredLimitKeepsItsLength) {
  addPictures(20);
  startView();
  for (int i = 0; i < 5; ++i) view->addNewImageToList();
  view->stopAnimation();
  fakes.preferences.setObject("NumImages", 2);
  view->startAnimation();
  waitForWalk();
  view->addNewImageToList();
  EXPECT_EQ(view->images().size(), 5U);
}

TEST_F(AnimationCycle, withoutAnyImageTheViewStaysBlackAndTriesAtEveryFrame) {
  startView();
  frames(4);
  EXPECT_TRUE(view->images().empty());
  addPictures(1);
  view->stopAnimation();
  view->startAnimation();
  waitForWalk();
  frame();
  EXPECT_EQ(view->images().size(), 1U);
  EXPECT_EQ(fakes.log.countContaining("doesn't correspond to a folder"), 4U);
}

TEST_F(AnimationCycle, withCardsShowingAFailedTryWaitsAFullDelay) {
  addPictures(1);
  startView();
  frame();
  ASSERT_EQ(view->images().size(), 1U);
  const std::size_t loads = fakes.images.loads().size();
  fakes.images.failAll();
  frames(9);  // one try, at 4.5 s; the folder is given up
  EXPECT_EQ(fakes.images.loads().size(), loads + 1);
  EXPECT_EQ(view->images().size(), 1U);
  const std::size_t misses = fakes.log.countContaining("doesn't correspond to a folder");
  frames(8);
  EXPECT_EQ(fakes.log.countContaining("doesn't correspond to a folder"), misses);
  frame();
  EXPECT_EQ(fakes.log.countContaining("doesn't correspond to a folder"), misses + 1);
}

TEST_F(AnimationCycle, aClockThatIsSetBackOrAheadKeepsNoCardAway) {
  addPictures(8);
  startView();
  frames(2);
  for (const double days : {-400.0, 800.0}) {
    const std::size_t before = fakes.images.loads().size();
    fakes.clock.setNow({fakes.clock.now().seconds + days * 86'400});
    frames(10);  // 5 s; the delay is four
    EXPECT_GT(fakes.images.loads().size(), before) << days;
  }
}

TEST_F(AnimationCycle, readsCountAndDelayWhenTheAnimationStarts) {
  fakes.preferences.setObject("NumImages", 3);
  fakes.preferences.setObject("Delay", 2.5);
  startView();
  fakes.preferences.setObject("NumImages", 9);
  EXPECT_EQ(view->numImages(), 3U);
  EXPECT_EQ(view->delay(), 2.5);
}

TEST_F(AnimationCycle, aCountOrDelayThatMakesNoSenseIsSaidAndTheDefaultTaken) {
  fakes.preferences.setObject("NumImages", -3);
  fakes.preferences.setObject("Delay", std::numeric_limits<double>::quiet_NaN());
  startView();
  EXPECT_EQ(view->numImages(), 5U);
  EXPECT_EQ(view->delay(), 4.0);
  EXPECT_EQ(fakes.log.countContaining("The preference "), 2U);
}

TEST_F(AnimationCycle, makesItsFolderAndAnEmptyListAtTheStart) {
  startView();
  EXPECT_EQ(fakes.log.count("Pelmora: Cache folder: (" +
                            fakes.userFolders.cachesFolders.front().bytes() + ")"),
            1U);
  EXPECT_EQ(contentsOf(displayList()), u"");
  EXPECT_EQ(fakes.log.count("Pelmora: Created cache file: " + displayList().bytes()), 1U);
}

TEST_F(AnimationCycle, thePreviewHasAListOfItsOwn) {
  view = std::make_unique<PelmoraView>(services, Rect{{0, 0}, {400, 300}}, true);
  moveIntoWindow(*view);
  view->startAnimation();
  EXPECT_TRUE(view->folder(displayList().parent(), "System Prefs Log.txt"));
}

TEST_F(AnimationCycle, runsOnWithoutACachesFolder) {
  fakes.userFolders.cachesFolders.clear();
  addPictures(1);
  startView();
  frame();
  EXPECT_EQ(view->images().size(), 1U);
}

TEST_F(AnimationCycle, runsOnWhenItsFolderCannotBeMade) {
  fakes.userFolders.cachesFolders = {folder.path() / "missing"};
  addPictures(1);
  startView();
  frame();
  EXPECT_EQ(view->images().size(), 1U);
  EXPECT_EQ(
      fakes.log.countContaining("Pelmora: Error either attrs of folder or creating cache folder: "),
      1U);
}

// To the system's calls, a link to nowhere is a folder that comes just before it would be made.
TEST_F(AnimationCycle, goesOnWithAFolderThatAnotherMakesMeanwhile) {
  std::filesystem::create_symlink("nowhere", (folder.path() / "caches/Pelmora").bytes());
  startView();
  EXPECT_EQ(fakes.log.countContaining("creating cache folder"), 0U);
  EXPECT_EQ(fakes.log.count("Pelmora: Error creating log file for screen 1."), 1U);
}

TEST_F(AnimationCycle, saysWhenTheListCannotBeMade) {
  folder.mkdir("caches/Pelmora");
  folder.mkdir("caches/Pelmora/Screen 1 Log.txt");
  startView();
  EXPECT_EQ(fakes.log.count("Pelmora: Error creating log file for screen 1."), 1U);
}

TEST_F(AnimationCycle, twoViewsLoadOnceAndTheLastUnloads) {
  addPictures(2);
  startView();
  PelmoraView second(services, fakes.displays.displays.front().frame, false);
  moveIntoWindow(second);
  second.startAnimation();
  view->stopAnimation();
  EXPECT_EQ(second.sourceList()->sources()->entries().size(), 1U);
  second.stopAnimation();
  EXPECT_TRUE(second.sourceList()->sources()->entries().empty());
}

}  // namespace pelmora::view
