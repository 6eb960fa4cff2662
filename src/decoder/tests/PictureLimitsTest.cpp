#include "decoder/PictureLimits.h"

#include <gtest/gtest.h>

namespace pelmora::decoder {

TEST(PictureLimits, letsTheLargestCamerasThrough) {
  EXPECT_TRUE(checkPictureLimits({.size = {16320, 12240}}).ok());
  EXPECT_TRUE(checkPictureLimits({.size = {8064, 6048}, .heldBytesPerPixel = 9}).ok());
}

TEST(PictureLimits, countsPixelsUpToTheLimitAndNotBeyond) {
  EXPECT_TRUE(checkPictureLimits({.size = {25'000, 20'000}, .bytesPerPixel = 1}).ok());
  EXPECT_FALSE(checkPictureLimits({.size = {25'001, 20'000}, .bytesPerPixel = 1}).ok());
}

TEST(PictureLimits, boundTheMemoryOfAPictureHeldWhole) {
  EXPECT_TRUE(checkPictureLimits({.size = {10'000, 5'000}, .heldBytesPerPixel = 15}).ok());
  EXPECT_FALSE(checkPictureLimits({.size = {10'001, 5'000}, .heldBytesPerPixel = 15}).ok());
  EXPECT_TRUE(checkPictureLimits({.size = {10'001, 5'000}}).ok());
}

TEST(PictureLimits, countTheBytesOfDeepPixels) {
  EXPECT_TRUE(checkPictureLimits({.size = {25'000, 10'000}, .bytesPerPixel = 8}).ok());
  EXPECT_FALSE(checkPictureLimits({.size = {25'001, 10'000}, .bytesPerPixel = 8}).ok());
}

TEST(PictureLimits, doNotOverflow) {
  EXPECT_FALSE(checkPictureLimits({.size = {2'147'483'647, 2'147'483'647}}).ok());
}

TEST(PictureLimits, refuseAPictureWithoutPixels) {
  EXPECT_FALSE(checkPictureLimits({.size = {0, 10}}).ok());
  EXPECT_FALSE(checkPictureLimits({.size = {10, -1}}).ok());
}

TEST(PictureLimits, sayTheSizeAndTheLimit) {
  EXPECT_EQ(checkPictureLimits({.size = {40'000, 40'000}, .bytesPerPixel = 1}).error().message,
            "it is 40000 × 40000 pixels, and no more than 500 megapixels of its kind are read");
}

}  // namespace pelmora::decoder
