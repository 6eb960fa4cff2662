#include "wayland/LayerSurface.h"

#include "wayland/LayerShell.h"
#include "wayland/tests/FakeCompositor.h"

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <utility>

namespace pelmora::wayland {

namespace {

using testing::ElementsAre;
using SizeInPoints = std::pair<std::uint32_t, std::uint32_t>;

class LayerSurfaceTest : public testing::Test {
 protected:
  LayerSurfaceTest() {
    layer =
        std::make_unique<LayerSurface>(*shell, compositor.surface(), compositor.output(),
                                       LayerSurface::Events{.configured =
                                                                [this](auto width, auto height) {
                                                                  size = {width, height};
                                                                },
                                                            .closed = [this] { layer.reset(); }});
  }

  FakeCompositor compositor;
  std::unique_ptr<LayerShell> shell = LayerShell::find(compositor.display());
  std::optional<SizeInPoints> size;
  std::unique_ptr<LayerSurface> layer;
};

}  // namespace

TEST_F(LayerSurfaceTest, asksForAWholeDisplayAboveEverythingAndForTheKeyboard) {
  EXPECT_THAT(compositor.requests(), ElementsAre("layer 3 screensaver", "size 0 0", "anchor 15",
                                                 "zone -1", "keyboard 1", "commit"));
  EXPECT_FALSE(size);
}

TEST_F(LayerSurfaceTest, tellsEachSizeThatItIsToHave) {
  compositor.sendConfigure(7, 1280, 720);
  EXPECT_EQ(size, SizeInPoints(1280, 720));
  EXPECT_EQ(compositor.requests().back(), "ack 7");
  compositor.sendConfigure(9, 640, 360);
  EXPECT_EQ(size, SizeInPoints(640, 360));
  EXPECT_EQ(compositor.requests().back(), "ack 9");
}

TEST_F(LayerSurfaceTest, mayEndInTheCallThatSaysItIsClosed) {
  compositor.sendClosed();
  EXPECT_EQ(layer, nullptr);
  EXPECT_EQ(compositor.requests().back(), "destroy");
}

}  // namespace pelmora::wayland
