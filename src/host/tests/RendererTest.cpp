#include "host/Renderer.h"

#include <gtest/gtest.h>

namespace pelmora::host {

TEST(Renderer, isChosenByName) {
  EXPECT_EQ(chooseRenderer("gpu"), Renderer::gpu);
  EXPECT_EQ(chooseRenderer("software"), Renderer::software);
}

TEST(Renderer, hasThreeNames) {
  for (const char* name : {"auto", "gpu", "software"}) EXPECT_TRUE(isRendererName(name));
  EXPECT_FALSE(isRendererName("magic"));
}

}  // namespace pelmora::host
