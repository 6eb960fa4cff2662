#include "wayland/LayerShell.h"

#include "wayland/tests/FakeCompositor.h"

#include <gtest/gtest.h>

namespace pelmora::wayland {

TEST(LayerShell, isFoundWhereThereAreLayers) {
  const FakeCompositor with(FakeCompositor::Offers::layers);
  const auto shell = LayerShell::find(with.display());
  ASSERT_NE(shell, nullptr);
  EXPECT_NE(shell->handle(), nullptr);
  const FakeCompositor without(FakeCompositor::Offers::noLayers);
  EXPECT_EQ(LayerShell::find(without.display()), nullptr);
}

}  // namespace pelmora::wayland
