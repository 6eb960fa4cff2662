#pragma once

#include "cache/FolderCache.h"
#include "cards/PMFile.h"
#include "platform/fake/FakeServices.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/OperationQueue.h"
#include "sources/PMSourceList.h"
#include "view/PelmoraView.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace pelmora::view {

/// One view on the first display of a fake desktop, with a folder of pictures to show.
class ViewFixture : public testing::Test {
 protected:
  ViewFixture() {
    fakes.userFolders.cachesFolders = {folder.mkdir("caches")};
    fakes.images.setDefaultSize({3000, 2000});
    pictures = folder.mkdir("pictures");
    fakes.userFolders.picturesFolders = {pictures};
    // Plain cards: what is drawn on a card is no matter of the view's.
    fakes.preferences.setObject("UsePolaroid", 0);
  }

  ~ViewFixture() override {
    endView();
    sources::PMSourceList::endSharedSourceList();
    cache::FolderCache::endSharedCache();
  }

  void endView() {
    // There is no tree here that would end the turns, and each holds its card until it has ended.
    if (view) {
      const auto layers = view->layer()->sublayers();
      for (const auto& layer : layers) layer->removeAnimation("TheRotation");
    }
    view.reset();
  }

  void addPictures(int count) {
    for (int i = 0; i < count; ++i) {
      folder.write("pictures/" + std::to_string(_written++) + ".jpg", "picture");
    }
  }

  PelmoraView& makeView(bool isPreview = false) {
    view =
        std::make_unique<PelmoraView>(services, fakes.displays.displays.front().frame, isPreview);
    return *view;
  }

  void moveIntoWindow(PelmoraView& moved) {
    moved.viewWillMoveToWindow(&window);
    moved.viewDidMoveToWindow();
  }

  /// The view in its window, animating, its folders walked.
  PelmoraView& startView() {
    makeView();
    moveIntoWindow(*view);
    view->startAnimation();
    waitForWalk();
    return *view;
  }

  void waitForWalk() { view->sourceList()->enumQueue().waitUntilAllOperationsAreFinished(); }

  /// One frame at the present time, then half a second goes by.
  void frame() {
    view->animateOneFrame();
    fakes.scheduler.advanceBy(view->animationTimeInterval());
  }

  void frames(int count) {
    for (int i = 0; i < count; ++i) frame();
  }

  platform::TemporaryFolder folder;
  platform::FakeServices fakes;
  platform::Services services = fakes.services();
  platform::FakeWindow window{fakes.displays.displays.front()};
  FilePath pictures;
  std::unique_ptr<PelmoraView> view;

 private:
  int _written = 0;
};

}  // namespace pelmora::view
