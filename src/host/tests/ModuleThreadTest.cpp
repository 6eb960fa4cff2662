#include "host/ModuleThread.h"

#include "host/SamplePictures.h"
#include "host/tests/CommandRun.h"
#include "platform/fake/FakeDisplays.h"
#include "platform/linux/SystemClock.h"
#include "render/LayerTree.h"
#include "render/Snapshot.h"

#include <condition_variable>
#include <future>
#include <mutex>

namespace pelmora::host {

namespace {

/// Lets a test wait for a snapshot with a card, or of a size.
class AwaitedPresenter : public render::Presenter {
 public:
  void submit(std::shared_ptr<const render::Snapshot> snapshot) override {
    const std::lock_guard lock(_mutex);
    _hasCard = _hasCard || !snapshot->root.sublayers.empty();
    _size = snapshot->root.bounds.size;
    _changed.notify_all();
  }
  [[nodiscard]] bool waitForCard() {
    std::unique_lock lock(_mutex);
    return _changed.wait_for(lock, std::chrono::seconds(20), [this] { return _hasCard; });
  }
  [[nodiscard]] bool waitForSize(const Size& size) {
    std::unique_lock lock(_mutex);
    return _changed.wait_for(lock, std::chrono::seconds(20), [&] { return _size == size; });
  }

 private:
  std::mutex _mutex;
  std::condition_variable _changed;
  bool _hasCard = false;
  Size _size;
};

class ModuleThreadTest : public CommandFixture {
 protected:
  [[nodiscard]] ViewPlace place() {
    return {.frame = displays.displays[0].frame,
            .display = displays.displays[0],
            .presenter = &presenter};
  }

  platform::SystemClock clock;
  platform::FakeDisplays displays;
  AwaitedPresenter presenter;
};

}  // namespace

TEST_F(ModuleThreadTest, showsPicturesBesideTheThreadThatPresents) {
  ASSERT_TRUE(paintSamplePictures(home.mkdir("Pictures")));
  run({"defaults", "write", "UsePolaroid", "0"});
  ModuleThread module(clock, displays, {});
  EXPECT_EQ(module.addView(place()), 0U);
  EXPECT_TRUE(presenter.waitForCard());
  module.resize(0, {800, 600}, 2);
  module.resize(7, {800, 600}, 2);  // no such view
}

TEST_F(ModuleThreadTest, letsGoOfThePresenterOfAViewThatIsRemoved) {
  ModuleThread module(clock, displays, {});
  const std::size_t first = module.addView(place());
  std::promise<void> released;
  {
    AwaitedPresenter shortLived;
    ViewPlace second = place();
    second.presenter = &shortLived;
    const std::size_t number = module.addView(second);
    EXPECT_EQ(number, first + 1);
    module.removeView(number, [&released] { released.set_value(); });
    ASSERT_EQ(released.get_future().wait_for(std::chrono::seconds(20)), std::future_status::ready);
  }
  module.resize(first, {640, 480}, 1);
  EXPECT_TRUE(presenter.waitForSize({640, 480}));
}

TEST_F(ModuleThreadTest, hearsOfAResizeThatComesBeforeItsViews) {
  ModuleThread module(clock, displays, {});
  module.resize(module.addView(place()), {800, 600}, 2);
  EXPECT_TRUE(presenter.waitForSize({800, 600}));
}

TEST_F(ModuleThreadTest, mayEndBeforeItHasBegun) {
  for (int i = 0; i < 5; ++i) {
    ModuleThread module(clock, displays, {});
    module.addView(place());
  }
}

TEST_F(ModuleThreadTest, endsOnceHoweverOftenItIsToldTo) {
  ModuleThread module(clock, displays, {});
  std::thread other([&module] { module.end(); });
  module.end();
  other.join();
}

}  // namespace pelmora::host
