#include "render/Animation.h"

#include <gtest/gtest.h>

namespace pelmora::render {
namespace {

TEST(Animation, namesTheAttributesByTheirKeyPaths) {
  EXPECT_STREQ(description(KeyPath::position), "position");
  EXPECT_STREQ(description(KeyPath::opacity), "opacity");
  EXPECT_STREQ(description(KeyPath::scale), "transform.scale");
  EXPECT_STREQ(description(KeyPath::rotation), "transform.rotation.z");
}

}  // namespace
}  // namespace pelmora::render
